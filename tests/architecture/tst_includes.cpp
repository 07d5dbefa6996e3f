#include "include_checker.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using nivora::test::IncludeChecker;

namespace {

// Who may see whom. The backends are seen by the entry alone.
const IncludeChecker::Rules rules{
    {u"platform"_s, {}},
    {u"platform_linux"_s, {u"platform"_s, u"platform_linux_keyring"_s}},
    {u"platform_linux_keyring"_s, {u"platform"_s}},
    {u"platform_linux_speech"_s, {u"platform"_s}},
    {u"platform_memory"_s, {u"platform"_s}},
    {u"core"_s, {u"platform"_s}},
    {u"stores"_s, {u"platform"_s, u"core"_s}},
    {u"account"_s, {u"platform"_s, u"core"_s, u"stores"_s}},
    {u"session"_s, {u"platform"_s, u"core"_s, u"stores"_s, u"desktop"_s}},
    {u"desktop"_s, {u"platform"_s}},
    {u"updates"_s, {u"platform"_s, u"core"_s}},
    {u"windows"_s,
     {u"platform"_s, u"core"_s, u"stores"_s, u"account"_s, u"session"_s, u"desktop"_s,
      u"updates"_s}},
    {u"app"_s,
     {u"platform"_s, u"core"_s, u"stores"_s, u"account"_s, u"session"_s, u"desktop"_s, u"updates"_s,
      u"windows"_s}},
    // Programs of their own.
    {u"ocr"_s, {u"core"_s}},
    {u"screencapture"_s, {u"app"_s, u"platform"_s, u"platform_linux"_s, u"windows"_s}},
    {u"main"_s, {u"platform"_s, u"platform_linux"_s, u"app"_s}},
};

using Tree = QList<std::pair<QString, QByteArray>>; // files and their contents

void write(const QTemporaryDir &folder, const Tree &tree)
{
    for (const auto &[name, contents] : tree) {
        const auto path = folder.filePath(name);
        QDir().mkpath(path.section(u'/', 0, -2));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }
}

} // namespace

class TestIncludes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checkerFinds_data()
    {
        QTest::addColumn<Tree>("tree");
        QTest::addColumn<QStringList>("forbidden");
        QTest::addColumn<QStringList>("dangling");
        QTest::addColumn<int>("roomCycles");
        QTest::addColumn<int>("fileCycles");

        const Tree sound{{u"core/include/core/a.h"_s, "#include <QString>\n"},
                         {u"core/a.cpp"_s, "#include \"core/a.h\"\n#include \"helper.h\"\n"},
                         {u"core/helper.h"_s, "// no #include \"app/x.h\"\n"},
                         {u"stores/b.cpp"_s, "  # include \"core/a.h\"\n#include \"b.moc\"\n"}};
        QTest::newRow("nothing in a sound tree")
            << sound << QStringList() << QStringList() << 0 << 0;
        QTest::newRow("an include against the direction")
            << sound + Tree{{u"stores/include/stores/b.h"_s, ""},
                            {u"core/c.cpp"_s, "#include \"stores/b.h\"\n"}}
            << QStringList{u"core/c.cpp includes stores/include/stores/b.h"_s} << QStringList() << 1
            << 0;
        QTest::newRow("a backend seen by another room")
            << Tree{{u"platform/linux/include/platform_linux/x.h"_s, ""},
                    {u"platform/include/platform/y.h"_s, ""},
                    {u"platform/linux/x.cpp"_s, "#include \"platform/y.h\"\n"},
                    {u"main.cpp"_s, "#include \"platform_linux/x.h\"\n"},
                    {u"app/z.cpp"_s, "#include \"platform_linux/x.h\"\n"}}
            << QStringList{u"app/z.cpp includes platform/linux/include/platform_linux/x.h"_s}
            << QStringList() << 0 << 0;
        QTest::newRow("two headers that include each other")
            << Tree{{u"core/include/core/a.h"_s, "#include \"core/b.h\"\n"},
                    {u"core/include/core/b.h"_s, "#include \"core/a.h\"\n"}}
            << QStringList() << QStringList() << 0 << 1;
        QTest::newRow("a name without a file, a room without a rule")
            << Tree{{u"attic/a.cpp"_s, "#include \"b.h\"\n"}}
            << QStringList{u"attic/a.cpp lies in a room without a rule"_s}
            << QStringList{u"attic/a.cpp includes b.h"_s} << 0 << 0;
    }

    void checkerFinds()
    {
        QFETCH(const Tree, tree);
        QTemporaryDir folder;
        write(folder, tree);
        const IncludeChecker checker(folder.path());
        QTEST(checker.forbiddenIncludes(rules), "forbidden");
        QTEST(checker.danglingIncludes(), "dangling");
        QTEST(int(checker.roomCycles().size()), "roomCycles");
        QTEST(int(checker.fileCycles().size()), "fileCycles");
    }

    void sourcesKeepTheRules()
    {
        const IncludeChecker checker(QStringLiteral(NIVORA_SOURCES), {u"han_variants_table.h"_s});
        QVERIFY(checker.fileCount() > 0 && checker.includeCount() > 0);
        QCOMPARE(checker.forbiddenIncludes(rules).join(u'\n'), QString());
        QCOMPARE(checker.danglingIncludes().join(u'\n'), QString());
        QCOMPARE(checker.roomCycles().join(u'\n'), QString());
        QCOMPARE(checker.fileCycles().join(u'\n'), QString());
    }
};

QTEST_GUILESS_MAIN(TestIncludes)
#include "tst_includes.moc"
