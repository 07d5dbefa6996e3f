// What the user of a soak does: one text after the other, one trigger after the other.
#include "soak.h"

#include "support/wait.h"

#include <QDBusMessage>

#include <X11/keysym.h>

#include <algorithm>

namespace nivora::bench {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora::test;

namespace {

constexpr auto fine = 2ms;
constexpr auto keyGap = 15ms; // faster than any hand

// Programs have line ends of their own, and Qt's some of its own kind.
QString plain(QString text)
{
    return text.remove(u'\r').replace(QChar::ParagraphSeparator, u'\n');
}

} // namespace

void Soak::runTo(int triggers)
{
    while (m_triggers < triggers && m_road.product->isRunning()) {
        disturb();
        Program &program = somebody();
        if (enter(program))
            scene(program);
    }
    if (!m_road.product->isRunning())
        problem(u"the product has ended: "_s + m_road.product->log().right(2000));
}

Soak::Program &Soak::somebody()
{
    const auto isThere = [this](const Program &each) {
        return each.running && (m_accessibilityBack < 0 || !each.isAccessible);
    };
    int sum = 0;
    for (const Program &each : m_programs)
        sum += isThere(each) ? each.weight : 0;
    int left = random(sum);
    for (Program &each : m_programs) {
        left -= isThere(each) ? each.weight : 0;
        if (left < 0)
            return each;
    }
    Q_UNREACHABLE();
}

QString Soak::makeText(int longest)
{
    static const QString forms[]{
        u"第%1句：请发一下报价，谢谢！"_s, u"%1番のお見積もりをお願いします。"_s,
        u"Sentence %1, please send the offer."_s, u"%1번 문장입니다. 견적을 보내 주세요."_s};
    const auto number = ++m_texts;
    QString text = forms[random(4)].arg(number);
    const int lines = random(25) == 0 ? 300 : random(3);
    for (int line = 0; line < lines && text.size() < longest - 40; ++line)
        text += (longest > 200 ? u'\n' : u' ') + forms[random(4)].arg(number);
    return text;
}

void Soak::scene(Program &program)
{
    const QString text = makeText(program.longestText);
    m_journal.note(u"select in"_s, QLatin1StringView(program.name));
    if (!program.running->show(text) || !program.running->select() ||
        plain(program.running->selectedText()) != text)
        return problem(u"%1 does not select its text"_s.arg(QLatin1StringView(program.name)));
    // The text as the program has it.
    program.text = program.running->selectedText().trimmed();
    m_service.expect(program.text);
    offerSomething();

    const QString before = program.running->content();
    const QString translation = m_service.translationOf(program.text);
    const int rounds = 3 + random(8);
    After after = After::Closed;
    for (int i = 0; i < rounds && after != After::Replaced; ++i)
        after = round(program, i + 1 == rounds);
    if (after != After::Replaced && random(12) == 0)
        compose(program);

    m_journal.note(u"compare"_s);
    const QString &wanted = after == After::Replaced ? translation : before;
    if (program.running->content() != wanted)
        problem(u"%1 holds \"%2\" instead of \"%3\""_s.arg(
            QLatin1StringView(program.name), program.running->content().left(80), wanted.left(80)));
    const auto strange = m_service.takeStrangeTexts();
    for (const QString &each : strange)
        problem(u"\"%1\" was sent, which nobody had selected"_s.arg(each.left(80)));
}

Soak::After Soak::round(Program &program, bool isLast)
{
    if (random(3) == 0)
        offerSomething();
    const bool wasOpen = isPanelOpen();
    const auto before = m_log->captures();
    pull();
    m_journal.note(u"await panel"_s, QLatin1StringView(wasOpen ? "anew" : ""));
    // Nothing tells on the screen that an open panel has opened anew.
    if (wasOpen && !waitUntil([&] { return m_log->captures() > before; }, patience, fine))
        problem(u"a trigger over the panel has no effect"_s);
    if (!waitUntil([this] { return isPanelOpen(); }, patience, fine)) {
        problem(u"no panel over "_s + QLatin1StringView(program.name));
        enter(program);
        return After::Closed;
    }
    ++m_triggers;
    const bool waits = random(2) == 0;
    if (waits)
        awaitResult(program.text);
    const bool canReplace = program.running->paste() == Application::Paste::ReplacesSelection;
    if (canReplace && !wasOpen && random(6) == 0 && m_finished.contains(program.text) && waits)
        return replace(program);
    // A terminal shows nothing of what is selected once the panel is in front.
    if (canReplace && program.isAccessible && !isLast && random(10) == 0)
        return After::LeftOpen;
    leave(program);
    checkClipboard();
    return After::Closed;
}

void Soak::pull()
{
    const int way = random(10);
    m_journal.note(u"pull"_s, QString::number(way));
    const auto tap = [this](std::initializer_list<X11Driver::Symbol> chord) {
        std::ranges::for_each(chord, [this](auto key) { m_road.user->hold(key); });
        std::ranges::for_each(chord, [this](auto key) { m_road.user->release(key); });
    };
    if (way < 5) {
        tap({XK_Shift_L});
        waitUntil([] { return false; }, keyGap);
        tap({XK_Shift_L});
    } else if (way < 8) {
        tap({XK_Control_L, XK_Alt_L, XK_o});
    } else {
        perform(u"invoke"_s);
    }
}

// Until the translation is in the history, or has no hope to come there.
void Soak::awaitResult(const QString &source)
{
    m_journal.note(u"await result"_s);
    const auto isOver = [&] {
        const auto fate = m_service.fateOf(source);
        return m_history->rowsOf(source) > 0 || !m_service.isOpen() ||
               (fate.failing > 0 && !fate.lastWasWhole);
    };
    if (!waitUntil(isOver, patience, fine)) {
        const auto fate = m_service.fateOf(source);
        problem(fate.whole + fate.failing > 0
                    ? u"no row in the history for \"%1\""_s.arg(source.left(80))
                    : u"\"%1\" is selected, and was not sent"_s.arg(source.left(80)));
    }
    if (m_history->rowsOf(source) > 0)
        m_finished.insert(source);
}

void Soak::leave(Program &program)
{
    if (random(8) == 0) {
        // Another window takes the keyboard, and the panel closes by itself. Nobody
        // turns away from what is not there yet.
        awaitProduct();
        Program *other = &somebody();
        if (other != &program && enter(*other)) {
            const bool closes = waitUntil([this] { return !isMapped(m_panel); }, patience, fine);
            if (closes)
                return void(enter(program));
            problem(isPanelOpen() ? u"the panel takes the keyboard back"_s
                                  : u"the panel stays without the keyboard"_s);
        }
    }
    if (!closePanel() || !m_road.user->waitForActive(program.running->window(), patience))
        problem(u"the panel does not close over "_s + QLatin1StringView(program.name));
}

Soak::After Soak::replace(Program &program)
{
    const QString translation = m_service.translationOf(program.text);
    m_journal.note(u"replace"_s);
    m_road.user->press({XK_Control_L, XK_Return});
    // The clipboard's owner is this thread: it answers before it asks others.
    waitUntil([this] { return !m_road.clipboard->owns(); }, patience, fine);
    // Another trigger while the clipboard is still lent.
    const bool hurries = random(4) == 0;
    const auto isReplaced = [&] { return program.running->content() == translation; };
    if (!waitUntil(isReplaced, patience, fine)) {
        // A program that does not answer in time is spared, and the user told.
        const auto held = m_log->heldBack();
        if (held == m_heldBack)
            problem(u"nothing was replaced in "_s + QLatin1StringView(program.name));
        m_heldBack = held;
        offerSomething();
        enter(program);
        return After::Closed;
    }
    if (!hurries) {
        checkClipboard();
        if (!m_road.user->waitForActive(program.running->window(), patience))
            problem(u"the program does not get the keyboard back"_s);
        return After::Replaced;
    }
    pull();
    if (!waitUntil([this] { return isPanelOpen(); }, patience, fine))
        problem(u"no panel after an insertion into "_s + QLatin1StringView(program.name));
    else
        ++m_triggers;
    leave(program);
    checkClipboard();
    // What it now selects, if anything, is the translation, which is no strange text.
    return After::Replaced;
}

// A trigger with nothing selected.
void Soak::compose(Program &program)
{
    if (isPanelOpen())
        leave(program);
    if (!program.isAccessible || !program.running->deselect())
        return;
    pull();
    if (!waitUntil([this] { return isPanelOpen(); }, patience, fine))
        return problem(u"no panel for typing over "_s + QLatin1StringView(program.name));
    ++m_triggers;
    leave(program);
    checkClipboard();
}

// The clipboard gets another owner or another content.
void Soak::offerSomething()
{
    m_journal.note(u"offer"_s);
    const QByteArray text = u"from before %1 👋"_s.arg(random(1000)).toUtf8();
    m_offers = {{"UTF8_STRING", text}};
    switch (random(8)) {
    case 0:
        m_offers.push_back({"text/html", "<b>" + text + "</b>"});
        m_offers.push_back({"image/png", QByteArray(200'000 + random(200'000), '\x89')});
        break;
    case 1:
        m_offers.push_back({"application/x-large", QByteArray(3'000'000, char(random(256)))});
        break;
    case 2:
        m_offers = {{"text/uri-list", "file:///tmp/a%20b\r\n"},
                    {"x-special/gnome-copied-files", "cut\nfile:///tmp/a%20b"}};
        break;
    default:
        break;
    }
    if (!m_road.clipboard->offer(m_offers))
        problem(u"the clipboard cannot be taken"_s);
}

void Soak::checkClipboard()
{
    m_journal.note(u"check clipboard"_s);
    const auto isKept = [this] {
        return m_road.clipboard->owns() ||
               std::ranges::all_of(m_offers, [this](const ClipboardPeer::Offer &offer) {
                   return m_road.clipboard->read(offer.format) == offer.data;
               });
    };
    if (!waitUntil(isKept, patience, fine))
        problem(u"the clipboard is lost: it holds "_s +
                QString::fromUtf8(m_road.clipboard->formats().join(' ')));
}

} // namespace nivora::bench
