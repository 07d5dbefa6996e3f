<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP" sourcelanguage="zh_CN">
<context>
    <name>AccessibilityPermission</name>
    <message>
        <source>Nivora 需要辅助功能权限</source>
        <translation>Nivora にはアクセシビリティの許可が必要です</translation>
    </message>
    <message>
        <source>开启后，桌面会把选中的文字和它的位置告诉 Nivora，双击 Shift 才可用。将为本次会话打开辅助功能服务（AT-SPI）；已在运行的程序可能要重新启动后才会响应。</source>
        <translation>有効にすると、選択したテキストとその位置がデスクトップから Nivora に伝わり、Shift の 2 回押しが使えるようになります。このセッションでアクセシビリティサービス（AT-SPI）を起動します。実行中のアプリは、再起動するまで応答しないことがあります。</translation>
    </message>
    <message>
        <source>开启</source>
        <translation>有効にする</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>辅助功能服务没有响应</source>
        <translation>アクセシビリティサービスが応答しません</translation>
    </message>
    <message>
        <source>请确认已安装 at-spi2-core 并且会话总线可用。在此之前可以使用 ⌃⌥O。</source>
        <translation>at-spi2-core がインストールされ、セッションバスが利用できることを確認してください。それまでは Ctrl+Alt+O を使えます。</translation>
    </message>
    <message>
        <source>好</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>没有找到系统设置程序</source>
        <translation>システム設定が見つかりません</translation>
    </message>
    <message>
        <source>Nivora 可以直接打开辅助功能服务（AT-SPI）。</source>
        <translation>Nivora からアクセシビリティサービス（AT-SPI）を直接起動できます。</translation>
    </message>
    <message>
        <source>辅助功能服务（AT-SPI）已经打开。</source>
        <translation>アクセシビリティサービス（AT-SPI）はすでに起動しています。</translation>
    </message>
</context>
<context>
    <name>AuthError</name>
    <message>
        <source>登录服务返回错误 (HTTP %1)。</source>
        <translation>ログインサービスがエラーを返しました (HTTP %1)。</translation>
    </message>
    <message>
        <source>网络错误：%1</source>
        <translation>ネットワークエラー: %1</translation>
    </message>
    <message>
        <source>登录服务响应异常，请重试。</source>
        <translation>ログインサービスの応答が正しくありません。もう一度お試しください。</translation>
    </message>
</context>
<context>
    <name>AuthFlowError</name>
    <message>
        <source>已取消登录。</source>
        <translation>ログインをキャンセルしました。</translation>
    </message>
    <message>
        <source>无法打开登录页面。</source>
        <translation>ログインページを開けません。</translation>
    </message>
    <message>
        <source>无法保存登录状态：系统密钥环不可用。</source>
        <translation>ログイン状態を保存できません。システムのキーリングが利用できません。</translation>
    </message>
</context>
<context>
    <name>BillingStatus</name>
    <message>
        <source>免费档</source>
        <comment>free plan</comment>
        <translation>無料プラン</translation>
    </message>
</context>
<context>
    <name>ConnectionTest</name>
    <message>
        <source>服务拒绝了 API Key (HTTP %1)。</source>
        <translation>サービスが API キーを拒否しました (HTTP %1)。</translation>
    </message>
    <message>
        <source>服务没有 v1/chat/completions，或不认识该模型 (HTTP %1)。</source>
        <translation>サービスに v1/chat/completions がないか、このモデルに対応していません (HTTP %1)。</translation>
    </message>
    <message>
        <source>服务可以连接，但请求过多或额度用尽 (HTTP %1)。</source>
        <translation>サービスに接続できましたが、リクエストが多すぎるか、利用枠を使い切っています (HTTP %1)。</translation>
    </message>
    <message>
        <source>模型不在服务的列表中</source>
        <translation>サービスの一覧にないモデルです</translation>
    </message>
    <message>
        <source>服务可以连接，但没有以流式返回文字，无法用于翻译。</source>
        <translation>サービスに接続できましたが、テキストがストリーミングで返されないため、翻訳には使えません。</translation>
    </message>
    <message>
        <source>连接正常（%1 毫秒）</source>
        <translation>接続できました（%1 ミリ秒）</translation>
    </message>
    <message>
        <source>模型可用</source>
        <translation>モデル利用可</translation>
    </message>
    <message>
        <source>支持流式</source>
        <translation>ストリーミング対応</translation>
    </message>
    <message>
        <source>报告用量</source>
        <translation>使用量を通知</translation>
    </message>
    <message>
        <source>不报告用量</source>
        <translation>使用量の通知なし</translation>
    </message>
</context>
<context>
    <name>FeedbackReason</name>
    <message>
        <source>翻译错误</source>
        <comment>feedback reason: mistranslation</comment>
        <translation>誤訳</translation>
    </message>
    <message>
        <source>漏译</source>
        <comment>feedback reason: omission</comment>
        <translation>訳抜け</translation>
    </message>
    <message>
        <source>数字错误</source>
        <comment>feedback reason: number error</comment>
        <translation>数字の誤り</translation>
    </message>
    <message>
        <source>语气不对</source>
        <comment>feedback reason: wrong tone</comment>
        <translation>口調が合わない</translation>
    </message>
    <message>
        <source>无法替换/插入译文</source>
        <comment>feedback reason: cannot replace or insert</comment>
        <translation>訳文を置き換え・挿入できない</translation>
    </message>
    <message>
        <source>其他</source>
        <comment>feedback reason: other</comment>
        <translation>その他</translation>
    </message>
</context>
<context>
    <name>Language</name>
    <message>
        <source>中文</source>
        <comment>language name: Chinese</comment>
        <translation>中国語</translation>
    </message>
    <message>
        <source>日本語</source>
        <comment>language name: Japanese</comment>
        <translation>日本語</translation>
    </message>
    <message>
        <source>English</source>
        <comment>language name: English</comment>
        <translation>英語</translation>
    </message>
    <message>
        <source>韩语</source>
        <comment>language name: Korean</comment>
        <translation>韓国語</translation>
    </message>
    <message>
        <source>繁体中文</source>
        <comment>language name: Traditional Chinese</comment>
        <translation>繁体字中国語</translation>
    </message>
    <message>
        <source>粤语</source>
        <comment>language name: Cantonese</comment>
        <translation>広東語</translation>
    </message>
    <message>
        <source>自动</source>
        <comment>auto-detect source language</comment>
        <translation>自動</translation>
    </message>
    <message>
        <source>罗马字</source>
        <comment>target: romaji transcription</comment>
        <translation>ローマ字</translation>
    </message>
    <message>
        <source>平假名</source>
        <comment>reading: hiragana transcription</comment>
        <translation>ひらがな</translation>
    </message>
</context>
<context>
    <name>NetworkFault</name>
    <message>
        <source>请求超时</source>
        <translation>リクエストがタイムアウトしました</translation>
    </message>
    <message>
        <source>无法连接服务器</source>
        <translation>サーバーに接続できません</translation>
    </message>
    <message>
        <source>没有网络连接</source>
        <translation>ネットワークに接続されていません</translation>
    </message>
    <message>
        <source>连接已中断</source>
        <translation>接続が切断されました</translation>
    </message>
</context>
<context>
    <name>NivoraApp</name>
    <message>
        <source>没能写回原来的窗口，译文已放在剪贴板里，可以直接粘贴。</source>
        <translation>元のウィンドウに書き戻せませんでした。訳文はクリップボードにあり、そのまま貼り付けられます。</translation>
    </message>
    <message>
        <source>没有找到可以打开网页的浏览器。</source>
        <translation>ウェブページを開くブラウザーが見つかりません。</translation>
    </message>
    <message>
        <source>这个桌面没有系统托盘，所以看不到 Nivora 的图标。双击 Shift 照常翻译；翻译历史、设置等，在应用菜单里右键点按 Nivora 就能打开。</source>
        <translation>このデスクトップにはトレイがないため、Nivora のアイコンは表示されません。Shift の 2 回押しでの翻訳はいつもどおり使えます。翻訳履歴や設定などは、アプリメニューで Nivora を右クリックすると開けます。</translation>
    </message>
</context>
<context>
    <name>ScreenCapture</name>
    <message>
        <source>拖动选出要翻译的文字 · 按住空格可移动 · Esc 取消</source>
        <translation>翻訳するテキストをドラッグで選択 · スペースキーを押しながら移動 · Esc でキャンセル</translation>
    </message>
    <message>
        <source>截图翻译</source>
        <translation>スクリーンショット翻訳</translation>
    </message>
</context>
<context>
    <name>TranslationError</name>
    <message>
        <source>密钥含有无法发送的字符</source>
        <comment>error: control characters in the API key</comment>
        <translation>API キーに送信できない文字が含まれています</translation>
    </message>
    <message>
        <source>无效响应</source>
        <comment>error: invalid response</comment>
        <translation>無効な応答です</translation>
    </message>
    <message>
        <source>服务返回错误 (HTTP %1)。</source>
        <comment>error: http status</comment>
        <translation>サービスがエラーを返しました (HTTP %1)。</translation>
    </message>
    <message>
        <source>网络错误：%1</source>
        <comment>error: network</comment>
        <translation>ネットワークエラー: %1</translation>
    </message>
    <message>
        <source>未收到译文，请重试。</source>
        <comment>error: empty response</comment>
        <translation>訳文を受信できませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>请求超时（模型可能正在加载，请重试）。</source>
        <comment>error: timeout</comment>
        <translation>タイムアウトしました（モデルを読み込み中の可能性があります。もう一度お試しください）。</translation>
    </message>
    <message>
        <source>无法连接翻译服务，请检查网络或服务地址。</source>
        <comment>error: cannot connect</comment>
        <translation>翻訳サービスに接続できません。ネットワークまたはサービスの URL を確認してください。</translation>
    </message>
</context>
<context>
    <name>UpdateServer</name>
    <message>
        <source>更新服务器把请求转到了别处</source>
        <translation>更新サーバーがリクエストを別の場所に転送しました</translation>
    </message>
    <message>
        <source>这个地址不在更新服务器上</source>
        <translation>このアドレスは更新サーバーにありません</translation>
    </message>
</context>
<context>
    <name>nivora::AccessibilityPage</name>
    <message>
        <source>继续</source>
        <translation>続ける</translation>
    </message>
    <message>
        <source>已授权</source>
        <translation>許可されました</translation>
    </message>
    <message>
        <source>开启辅助功能</source>
        <translation>アクセシビリティを有効にする</translation>
    </message>
    <message>
        <source>Nivora 需要它来读取选中的文字、模拟粘贴回填。</source>
        <translation>選択テキストの読み取りと訳文の貼り付けに使います。</translation>
    </message>
    <message>
        <source>打开系统设置授权…</source>
        <translation>システム設定で許可…</translation>
    </message>
    <message>
        <source>授权后会自动继续</source>
        <translation>許可すると自動的に次へ進みます</translation>
    </message>
    <message>
        <source>稍后再说</source>
        <translation>あとで</translation>
    </message>
</context>
<context>
    <name>nivora::AppCoordinator</name>
    <message>
        <source>需要屏幕录制权限</source>
        <translation>画面をキャプチャする許可が必要です</translation>
    </message>
    <message>
        <source>「截图翻译」需要屏幕录制权限。请在系统设置→隐私与安全性→屏幕录制中开启 Nivora，然后重新启动 App。</source>
        <translation>「スクリーンショット翻訳」には画面をキャプチャする許可が必要です。システム設定のアプリの権限で Nivora にスクリーンショットを許可し、Nivora を再起動してください。</translation>
    </message>
    <message>
        <source>打开系统设置</source>
        <translation>システム設定を開く</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>没有找到系统设置程序</source>
        <translation>システム設定が見つかりません</translation>
    </message>
    <message>
        <source>好</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>nivora::BillingStore</name>
    <message>
        <source>无法打开浏览器。</source>
        <translation>ブラウザーを開けません。</translation>
    </message>
</context>
<context>
    <name>nivora::ComposeInput</name>
    <message>
        <source>原文</source>
        <translation>原文</translation>
    </message>
    <message>
        <source>打开设置</source>
        <translation>設定を開く</translation>
    </message>
    <message>
        <source>停止语音输入</source>
        <translation>音声入力を停止</translation>
    </message>
    <message>
        <source>语音输入（说话转文字）</source>
        <translation>音声入力（話した言葉を文字に）</translation>
    </message>
    <message>
        <source>语音输入</source>
        <translation>音声入力</translation>
    </message>
    <message>
        <source>翻译中…</source>
        <translation>翻訳中…</translation>
    </message>
    <message>
        <source>翻译  ⌘↩</source>
        <translation>翻訳  Ctrl+↩</translation>
    </message>
    <message>
        <source>翻译</source>
        <translation>翻訳</translation>
    </message>
</context>
<context>
    <name>nivora::ContextPopover</name>
    <message>
        <source>背景</source>
        <translation>背景</translation>
    </message>
    <message>
        <source>回复对方消息时，填入对方的话作为语境，译文更贴切</source>
        <translation>返信するときに相手の言葉を入れておくと、文脈に合った訳になります</translation>
    </message>
    <message>
        <source>背景（可选，如对方的消息）</source>
        <translation>背景（任意。相手のメッセージなど）</translation>
    </message>
    <message>
        <source>清除</source>
        <translation>クリア</translation>
    </message>
    <message>
        <source>完成</source>
        <translation>完了</translation>
    </message>
</context>
<context>
    <name>nivora::FeedbackForm</name>
    <message>
        <source>反馈译文问题</source>
        <translation>訳文の問題を報告</translation>
    </message>
    <message>
        <source>问题类型</source>
        <translation>問題の種類</translation>
    </message>
    <message>
        <source>补充说明（可选）</source>
        <translation>補足（任意）</translation>
    </message>
    <message>
        <source>提交失败，请稍后再试</source>
        <translation>送信できませんでした。しばらくしてからもう一度お試しください</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>提交</source>
        <translation>送信</translation>
    </message>
    <message>
        <source>反馈经审核有效后，双倍返还本次消耗的额度。</source>
        <translation>確認後、今回使った利用枠の 2 倍が返還されます。</translation>
    </message>
    <message>
        <source>已提交，感谢反馈</source>
        <translation>送信しました。ご報告ありがとうございます</translation>
    </message>
    <message>
        <source>审核有效后将双倍返还本次消耗的额度。</source>
        <translation>確認後、今回使った利用枠の 2 倍が返還されます。</translation>
    </message>
    <message>
        <source>完成</source>
        <translation>完了</translation>
    </message>
</context>
<context>
    <name>nivora::FlowingText</name>
    <message>
        <source>复制</source>
        <translation>コピー</translation>
    </message>
    <message>
        <source>全选</source>
        <translation>すべて選択</translation>
    </message>
</context>
<context>
    <name>nivora::GlossaryModel</name>
    <message>
        <source>中文</source>
        <translation>中国語</translation>
    </message>
    <message>
        <source>日本語</source>
        <translation>日本語</translation>
    </message>
</context>
<context>
    <name>nivora::GlossarySettingsSection</name>
    <message>
        <source>术语表</source>
        <translation>用語集</translation>
    </message>
    <message>
        <source>筛选术语</source>
        <translation>用語を絞り込む</translation>
    </message>
    <message>
        <source>翻译时源文出现的术语会按此表固定译法（中↔日 双向）。</source>
        <translation>原文中の用語は、この表のとおりに訳されます（中国語↔日本語）。</translation>
    </message>
    <message numerus="yes">
        <source>已粘贴 %n 条新术语。</source>
        <translation>
            <numerusform>新しい用語を %n 件貼り付けました。</numerusform>
        </translation>
    </message>
    <message>
        <source>添加术语</source>
        <translation>用語を追加</translation>
    </message>
    <message>
        <source>导入…</source>
        <translation>読み込む…</translation>
    </message>
    <message>
        <source>导出…</source>
        <translation>書き出す…</translation>
    </message>
    <message>
        <source>导入术语表</source>
        <translation>用語集を読み込む</translation>
    </message>
    <message>
        <source>表格文件 (*.csv *.tsv *.txt)</source>
        <translation>表形式のファイル (*.csv *.tsv *.txt)</translation>
    </message>
    <message>
        <source>所有文件 (*)</source>
        <translation>すべてのファイル (*)</translation>
    </message>
    <message>
        <source>没能导入：不是 UTF-8 编码的 CSV 文件。</source>
        <translation>読み込めません。UTF-8 の CSV ファイルではありません。</translation>
    </message>
    <message numerus="yes">
        <source>已导入 %n 条新术语。</source>
        <translation>
            <numerusform>新しい用語を %n 件読み込みました。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n 条已在表中。</source>
        <translation>
            <numerusform>%n 件はすでに登録されています。</numerusform>
        </translation>
    </message>
    <message>
        <source>导出术语表</source>
        <translation>用語集を書き出す</translation>
    </message>
    <message>
        <source>CSV 文件 (*.csv)</source>
        <translation>CSV ファイル (*.csv)</translation>
    </message>
    <message numerus="yes">
        <source>已导出 %n 条术语。</source>
        <translation>
            <numerusform>用語を %n 件書き出しました。</numerusform>
        </translation>
    </message>
    <message>
        <source>没能导出：%1</source>
        <translation>書き出せません: %1</translation>
    </message>
</context>
<context>
    <name>nivora::GlossaryTable</name>
    <message>
        <source>术语表</source>
        <translation>用語集</translation>
    </message>
    <message>
        <source>还没有术语。可以逐条添加，也可以把成对的词粘贴到这里。</source>
        <translation>用語はまだありません。追加するか、対訳を貼り付けてください。</translation>
    </message>
    <message>
        <source>没有匹配的术语</source>
        <translation>一致する用語はありません</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>削除</translation>
    </message>
</context>
<context>
    <name>nivora::HistoryList</name>
    <message>
        <source>翻译历史</source>
        <translation>翻訳履歴</translation>
    </message>
    <message>
        <source>复制译文</source>
        <translation>訳文をコピー</translation>
    </message>
    <message>
        <source>复制原文</source>
        <translation>原文をコピー</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>削除</translation>
    </message>
</context>
<context>
    <name>nivora::HistoryView</name>
    <message>
        <source>暂无翻译历史</source>
        <translation>翻訳履歴はありません</translation>
    </message>
    <message>
        <source>没有结果</source>
        <translation>見つかりません</translation>
    </message>
    <message>
        <source>翻译会自动记录在本地。可在设置里关闭或清空。</source>
        <translation>翻訳はこのコンピューターに記録されます。設定で変更できます。</translation>
    </message>
    <message>
        <source>搜索原文或译文</source>
        <translation>原文・訳文を検索</translation>
    </message>
    <message>
        <source>导出所示记录…</source>
        <translation>表示中の履歴を書き出す…</translation>
    </message>
    <message>
        <source>清空</source>
        <translation>すべて消去</translation>
    </message>
    <message>
        <source>没有与“%1”匹配的记录。</source>
        <translation>「%1」に一致する履歴はありません。</translation>
    </message>
    <message>
        <source>导出所示记录</source>
        <translation>表示中の履歴を書き出す</translation>
    </message>
    <message>
        <source>CSV 表格 (*.csv)</source>
        <translation>CSV ファイル (*.csv)</translation>
    </message>
    <message>
        <source>JSON 文件 (*.json)</source>
        <translation>JSON ファイル (*.json)</translation>
    </message>
    <message>
        <source>翻译历史</source>
        <translation>翻訳履歴</translation>
    </message>
    <message>
        <source>没能导出翻译历史</source>
        <translation>翻訳履歴を書き出せませんでした</translation>
    </message>
    <message>
        <source>好</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>nivora::HistoryWindowController</name>
    <message>
        <source>翻译历史</source>
        <comment>translation history window title</comment>
        <translation>翻訳履歴</translation>
    </message>
</context>
<context>
    <name>nivora::LoginView</name>
    <message>
        <source>登录 Nivora</source>
        <translation>Nivora にログイン</translation>
    </message>
    <message>
        <source>登录后即可使用 Nivora 云端翻译。</source>
        <translation>クラウド翻訳にはログインが必要です。</translation>
    </message>
</context>
<context>
    <name>nivora::LoginWindowController</name>
    <message>
        <source>关闭面板</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>登录 Nivora</source>
        <translation>Nivora にログイン</translation>
    </message>
</context>
<context>
    <name>nivora::MenuContent</name>
    <message>
        <source>⚠️ 未授予辅助功能权限，双击 Shift 不可用</source>
        <translation>⚠️ アクセシビリティの許可がなく、Shift の 2 回押しは使えません</translation>
    </message>
    <message>
        <source>打开系统设置授权…</source>
        <translation>システム設定で許可…</translation>
    </message>
    <message>
        <source>翻译面板</source>
        <translation>翻訳パネル</translation>
    </message>
    <message>
        <source>翻译历史…</source>
        <translation>翻訳履歴…</translation>
    </message>
    <message>
        <source>设置…</source>
        <translation>設定…</translation>
    </message>
    <message>
        <source>检查更新…</source>
        <translation>アップデートを確認…</translation>
    </message>
    <message>
        <source>关于</source>
        <translation>Nivora について</translation>
    </message>
    <message>
        <source>版本历史…</source>
        <translation>バージョン履歴…</translation>
    </message>
    <message>
        <source>访问官网</source>
        <translation>公式サイトを開く</translation>
    </message>
    <message>
        <source>登录…</source>
        <translation>ログイン…</translation>
    </message>
    <message>
        <source>登出</source>
        <translation>ログアウト</translation>
    </message>
    <message>
        <source>退出 Nivora</source>
        <translation>Nivora を終了</translation>
    </message>
    <message>
        <source>截图翻译</source>
        <translation>スクリーンショット翻訳</translation>
    </message>
</context>
<context>
    <name>nivora::NotesBrowser</name>
    <message>
        <source>更新说明</source>
        <translation>リリースノート</translation>
    </message>
</context>
<context>
    <name>nivora::OnboardingWindowController</name>
    <message>
        <source>跳过</source>
        <translation>スキップ</translation>
    </message>
    <message>
        <source>欢迎使用 Nivora</source>
        <translation>Nivora へようこそ</translation>
    </message>
</context>
<context>
    <name>nivora::PanelFooter</name>
    <message>
        <source>以对方原文为背景，撰写并翻译你的回复</source>
        <translation>相手の原文を背景にして、返信を書いて翻訳</translation>
    </message>
    <message>
        <source>朗读</source>
        <translation>読み上げ</translation>
    </message>
    <message>
        <source>复制译文</source>
        <translation>訳文をコピー</translation>
    </message>
    <message>
        <source>更多译文</source>
        <translation>ほかの訳</translation>
    </message>
    <message>
        <source>反馈译文问题</source>
        <translation>訳文の問題を報告</translation>
    </message>
    <message>
        <source>回复</source>
        <translation>返信</translation>
    </message>
    <message>
        <source>历史</source>
        <translation>履歴</translation>
    </message>
    <message>
        <source>复用了本地历史中的相同翻译，未重新请求</source>
        <translation>履歴にある同じ翻訳を再利用しました（リクエストなし）</translation>
    </message>
    <message>
        <source>⌘↩ 替换原文</source>
        <translation>Ctrl+↩ 原文を置換</translation>
    </message>
    <message>
        <source>⌘↩ 插入到输入框</source>
        <translation>Ctrl+↩ 入力欄に挿入</translation>
    </message>
    <message>
        <source>已复制，粘到回复框</source>
        <translation>コピーしました。返信欄に貼り付けてください</translation>
    </message>
    <message>
        <source>⌘↩ 复制，粘到回复框</source>
        <translation>Ctrl+↩ 返信用にコピー</translation>
    </message>
    <message>
        <source>已复制</source>
        <translation>コピーしました</translation>
    </message>
    <message>
        <source>⌘↩ 复制</source>
        <translation>Ctrl+↩ コピー</translation>
    </message>
    <message>
        <source>语音服务不可用</source>
        <translation>音声サービスを利用できません</translation>
    </message>
    <message>
        <source>%1 tok</source>
        <translation>%1 tok</translation>
    </message>
</context>
<context>
    <name>nivora::PanelHeader</name>
    <message>
        <source>背景</source>
        <translation>背景</translation>
    </message>
    <message>
        <source>关闭面板</source>
        <translation>パネルを閉じる</translation>
    </message>
    <message>
        <source>已钉住（失焦不关闭）</source>
        <translation>ピン留め中（フォーカスを失っても閉じません）</translation>
    </message>
    <message>
        <source>钉住</source>
        <translation>ピン留め</translation>
    </message>
</context>
<context>
    <name>nivora::ProgressPips</name>
    <message>
        <source>第 %1 步，共 %2 步</source>
        <translation>ステップ %1/%2</translation>
    </message>
</context>
<context>
    <name>nivora::ReadyPage</name>
    <message>
        <source>完成</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>双击 Shift</source>
        <translation>Shift を 2 回押す</translation>
    </message>
    <message>
        <source>在选中文字 / 任意输入框唤起</source>
        <translation>選択範囲や入力欄で呼び出す</translation>
    </message>
    <message>
        <source>⌃⌥O</source>
        <translation>Ctrl+Alt+O</translation>
    </message>
    <message>
        <source>助记快捷键，效果相同</source>
        <translation>同じ動作のショートカット</translation>
    </message>
    <message>
        <source>准备就绪 🎉</source>
        <translation>準備ができました 🎉</translation>
    </message>
    <message>
        <source>菜单栏的「N」里还有截图翻译与设置。</source>
        <translation>トレイの「N」からスクリーンショット翻訳や設定も開けます。</translation>
    </message>
</context>
<context>
    <name>nivora::ReleaseNotesWebView</name>
    <message>
        <source>无法加载更新说明</source>
        <translation>リリースノートを読み込めません</translation>
    </message>
</context>
<context>
    <name>nivora::ResultArea</name>
    <message>
        <source>翻译中</source>
        <translation>翻訳中</translation>
    </message>
    <message>
        <source>重试</source>
        <translation>再試行</translation>
    </message>
    <message>
        <source>输入文字，自动翻译。</source>
        <translation>テキストを入力すると自動で翻訳します。</translation>
    </message>
</context>
<context>
    <name>nivora::ResultContent</name>
    <message>
        <source>译文</source>
        <translation>訳文</translation>
    </message>
    <message>
        <source>读音</source>
        <translation>読み</translation>
    </message>
    <message>
        <source>回译</source>
        <translation>逆翻訳</translation>
    </message>
    <message>
        <source>生成说法…</source>
        <translation>ほかの言い方を生成中…</translation>
    </message>
</context>
<context>
    <name>nivora::SettingsAccountTab</name>
    <message>
        <source>登录</source>
        <translation>ログイン</translation>
    </message>
    <message>
        <source>登录后即可使用 Nivora 云端翻译，用量与订阅随账户保存。</source>
        <translation>ログインすると Nivora クラウドの翻訳を使えます。使用量とサブスクリプションはアカウントに保存されます。</translation>
    </message>
    <message>
        <source>账户</source>
        <translation>アカウント</translation>
    </message>
    <message>
        <source>已登录</source>
        <translation>ログイン中</translation>
    </message>
    <message>
        <source>登出</source>
        <translation>ログアウト</translation>
    </message>
</context>
<context>
    <name>nivora::SettingsBackendSection</name>
    <message>
        <source>未填写时，请求会发往 Nivora 云端。</source>
        <translation>空欄の場合、リクエストは Nivora クラウドに送られます。</translation>
    </message>
    <message>
        <source>地址要以 http:// 或 https:// 开头。</source>
        <translation>http:// または https:// で始まる URL を入力してください。</translation>
    </message>
    <message>
        <source>地址里没有可用的主机名。</source>
        <translation>URL に有効なホスト名がありません。</translation>
    </message>
    <message>
        <source>地址已以 /v1 结尾，而请求会自己加上 v1，通常应去掉。</source>
        <translation>URL が /v1 で終わっています。v1 は自動的に付くため、通常は不要です。</translation>
    </message>
    <message>
        <source>翻译服务</source>
        <translation>翻訳サービス</translation>
    </message>
    <message>
        <source>把请求发往你自己的 OpenAI 兼容服务，登录态绝不外发。</source>
        <translation>リクエストはお使いの OpenAI 互換サービスに送られます。ログイン情報が送信されることはありません。</translation>
    </message>
    <message>
        <source>实时翻译</source>
        <translation>リアルタイム翻訳</translation>
    </message>
    <message>
        <source>开启后边输入边翻译；关闭则按 ⌘↩ 或「翻译」按钮手动触发，更省用量。</source>
        <translation>オンにすると入力しながら翻訳します。オフのときは Ctrl+↩ または「翻訳」ボタンで翻訳し、使用量を節約できます。</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 秒</translation>
    </message>
    <message>
        <source>请求超时</source>
        <translation>タイムアウト</translation>
    </message>
    <message>
        <source>Nivora 云端</source>
        <translation>Nivora クラウド</translation>
    </message>
    <message>
        <source>自建后端（BYO）</source>
        <translation>独自サーバー（BYO）</translation>
    </message>
    <message>
        <source>后端</source>
        <translation>バックエンド</translation>
    </message>
    <message>
        <source>由 Nivora 云端提供翻译，开箱即用。</source>
        <translation>Nivora クラウドで翻訳します。設定は不要です。</translation>
    </message>
    <message>
        <source>测试连接</source>
        <translation>接続テスト</translation>
    </message>
    <message>
        <source>API 地址</source>
        <translation>API の URL</translation>
    </message>
    <message>
        <source>模型名</source>
        <translation>モデル名</translation>
    </message>
    <message>
        <source>API Key（可选）</source>
        <translation>API キー（任意）</translation>
    </message>
    <message>
        <source>正在测试…</source>
        <translation>テスト中…</translation>
    </message>
</context>
<context>
    <name>nivora::SettingsGeneralTab</name>
    <message>
        <source>快捷键</source>
        <translation>ショートカット</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>双击 Shift 间隔</source>
        <translation>Shift 2 回押しの間隔</translation>
    </message>
    <message>
        <source>外观</source>
        <translation>外観</translation>
    </message>
    <message>
        <source>跟随系统</source>
        <translation>システムに合わせる</translation>
    </message>
    <message>
        <source>中文</source>
        <translation>简体中文</translation>
    </message>
    <message>
        <source>繁体中文</source>
        <translation>繁體中文</translation>
    </message>
    <message>
        <source>日本語</source>
        <translation>日本語</translation>
    </message>
    <message>
        <source>English</source>
        <translation>English</translation>
    </message>
    <message>
        <source>App 语言</source>
        <translation>表示言語</translation>
    </message>
    <message>
        <source>更改语言后需重启生效</source>
        <translation>言語の変更は再起動後に反映されます</translation>
    </message>
    <message>
        <source>立即重启</source>
        <translation>今すぐ再起動</translation>
    </message>
    <message>
        <source>主题</source>
        <translation>テーマ</translation>
    </message>
    <message>
        <source>浅色</source>
        <translation>ライト</translation>
    </message>
    <message>
        <source>深色</source>
        <translation>ダーク</translation>
    </message>
    <message>
        <source>行为</source>
        <translation>動作</translation>
    </message>
    <message>
        <source>失去焦点时关闭面板</source>
        <translation>フォーカスを失ったらパネルを閉じる</translation>
    </message>
    <message>
        <source>翻译完成后自动复制</source>
        <translation>翻訳後に自動でコピーする</translation>
    </message>
    <message>
        <source>保存翻译历史（仅本地）</source>
        <translation>翻訳履歴を保存する（このコンピューターのみ）</translation>
    </message>
    <message>
        <source>开机自动启动</source>
        <translation>ログイン時に起動する</translation>
    </message>
    <message>
        <source>朗读</source>
        <translation>読み上げ</translation>
    </message>
    <message>
        <source>翻译完成后自动朗读</source>
        <translation>翻訳後に自動で読み上げる</translation>
    </message>
    <message>
        <source>试听</source>
        <translation>試聴</translation>
    </message>
    <message>
        <source>语速</source>
        <translation>読み上げの速さ</translation>
    </message>
    <message>
        <source>日语语音</source>
        <translation>日本語の音声</translation>
    </message>
    <message>
        <source>更好的音质可在「系统设置 → 辅助功能 → 朗读内容」下载增强语音。</source>
        <translation>Speech Dispatcher に音声を追加すると、音質がよくなります。</translation>
    </message>
    <message>
        <source>自动（最佳）</source>
        <translation>自動（最適）</translation>
    </message>
</context>
<context>
    <name>nivora::SettingsTranslationTab</name>
    <message>
        <source>自建后端提示模板</source>
        <translation>独自サーバーのプロンプト</translation>
    </message>
    <message>
        <source>可用变量：{{text}} {{target}} {{source}} {{style}} {{background}} {{glossary}}。仅 BYO（自建后端）时生效。</source>
        <translation>使える変数: {{text}} {{target}} {{source}} {{style}} {{background}} {{glossary}}。独自サーバー（BYO）でのみ有効です。</translation>
    </message>
    <message>
        <source>恢复默认模板</source>
        <translation>標準のプロンプトに戻す</translation>
    </message>
    <message>
        <source>语言</source>
        <translation>言語</translation>
    </message>
    <message>
        <source>我的语言</source>
        <translation>自分の言語</translation>
    </message>
    <message>
        <source>我用母语书写时，译成</source>
        <translation>自分の言語で書いたときの訳先</translation>
    </message>
    <message>
        <source>外语自动译成「我的语言」；当源文本身已是我的语言时，译成上面选的语言。每次翻译都可在面板里临时改方向。</source>
        <translation>外国語は「自分の言語」に翻訳します。原文が自分の言語のときは、上で選んだ言語に翻訳します。翻訳の方向はパネルでその都度変えられます。</translation>
    </message>
    <message>
        <source>日语增强</source>
        <translation>日本語サポート</translation>
    </message>
    <message>
        <source>读音显示</source>
        <translation>読みの表示</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>オフ</translation>
    </message>
    <message>
        <source>罗马音</source>
        <translation>ローマ字</translation>
    </message>
    <message>
        <source>平假名</source>
        <translation>ひらがな</translation>
    </message>
    <message>
        <source>书写日语风格</source>
        <translation>日本語の文体</translation>
    </message>
    <message>
        <source>默认</source>
        <translation>標準</translation>
    </message>
    <message>
        <source>礼貌</source>
        <translation>丁寧</translation>
    </message>
    <message>
        <source>商务敬语</source>
        <translation>ビジネス敬語</translation>
    </message>
    <message>
        <source>写日语时显示中文回译（校验原意）</source>
        <translation>日本語を書くとき中国語の逆翻訳を表示する</translation>
    </message>
    <message>
        <source>仅在涉及日语时生效。</source>
        <translation>日本語が関わる翻訳でのみ有効です。</translation>
    </message>
</context>
<context>
    <name>nivora::SettingsWindow</name>
    <message>
        <source>Nivora 设置</source>
        <translation>Nivora の設定</translation>
    </message>
    <message>
        <source>通用</source>
        <translation>一般</translation>
    </message>
    <message>
        <source>翻译</source>
        <translation>翻訳</translation>
    </message>
    <message>
        <source>账户</source>
        <translation>アカウント</translation>
    </message>
</context>
<context>
    <name>nivora::SignInForm</name>
    <message>
        <source>用 Google 登录</source>
        <translation>Google でログイン</translation>
    </message>
    <message>
        <source>邮箱</source>
        <translation>メールアドレス</translation>
    </message>
    <message>
        <source>6 位验证码</source>
        <translation>6 桁の認証コード</translation>
    </message>
    <message>
        <source>返回</source>
        <translation>戻る</translation>
    </message>
    <message>
        <source>请在浏览器中完成登录</source>
        <translation>ブラウザーでログインを完了してください</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>或</source>
        <translation>または</translation>
    </message>
    <message>
        <source>发送中…</source>
        <translation>送信中…</translation>
    </message>
    <message>
        <source>发送验证码</source>
        <translation>認証コードを送信</translation>
    </message>
    <message>
        <source>验证码已发送到 %1，请查收邮箱。</source>
        <extracomment>OTP code sent to email</extracomment>
        <translation>%1 に認証コードを送信しました。
メールをご確認ください。</translation>
    </message>
    <message>
        <source>登录中…</source>
        <translation>ログイン中…</translation>
    </message>
    <message>
        <source>登录</source>
        <translation>ログイン</translation>
    </message>
</context>
<context>
    <name>nivora::SignInPage</name>
    <message>
        <source>继续</source>
        <translation>続ける</translation>
    </message>
    <message>
        <source>已登录</source>
        <translation>ログインしました</translation>
    </message>
    <message>
        <source>登录</source>
        <translation>ログイン</translation>
    </message>
    <message>
        <source>你的用量与订阅随账户保存。</source>
        <translation>使用量とプランはアカウントに保存されます。</translation>
    </message>
</context>
<context>
    <name>nivora::SpeechInputService</name>
    <message>
        <source>需要麦克风和语音识别权限</source>
        <translation>マイクと音声認識の許可が必要です</translation>
    </message>
    <message>
        <source>当前语言的语音识别暂不可用</source>
        <translation>この言語の音声認識は現在利用できません</translation>
    </message>
    <message>
        <source>没有找到麦克风</source>
        <translation>マイクが見つかりません</translation>
    </message>
    <message>
        <source>无法打开麦克风</source>
        <translation>マイクを使用できません</translation>
    </message>
    <message>
        <source>麦克风已断开</source>
        <translation>マイクの接続が切れました</translation>
    </message>
    <message>
        <source>语音识别模型无法读取</source>
        <translation>音声認識モデルを読み込めません</translation>
    </message>
    <message>
        <source>语音识别出错</source>
        <translation>音声認識でエラーが発生しました</translation>
    </message>
</context>
<context>
    <name>nivora::SubscriptionSettingsSection</name>
    <message>
        <source>订阅</source>
        <translation>サブスクリプション</translation>
    </message>
    <message>
        <source>用量统计</source>
        <translation>使用量</translation>
    </message>
    <message>
        <source>刷新</source>
        <translation>更新</translation>
    </message>
    <message>
        <source>加载中…</source>
        <translation>読み込み中…</translation>
    </message>
    <message>
        <source>暂无订阅信息</source>
        <translation>サブスクリプションの情報はありません</translation>
    </message>
    <message>
        <source>本期于 %1 重置</source>
        <comment>billing period reset date</comment>
        <translation>%1 にリセットされます</translation>
    </message>
    <message>
        <source>管理订阅</source>
        <translation>サブスクリプションを管理</translation>
    </message>
    <message>
        <source>升级到 Pro</source>
        <translation>Pro にアップグレード</translation>
    </message>
</context>
<context>
    <name>nivora::UpdateWindow</name>
    <message>
        <source>软件更新</source>
        <translation>ソフトウェアアップデート</translation>
    </message>
    <message>
        <source>版本历史</source>
        <translation>バージョン履歴</translation>
    </message>
    <message>
        <source>跳过此版本</source>
        <translation>このバージョンをスキップ</translation>
    </message>
    <message>
        <source>以后提醒</source>
        <translation>あとで通知</translation>
    </message>
    <message>
        <source>打开下载页</source>
        <translation>ダウンロードページを開く</translation>
    </message>
    <message>
        <source>重试</source>
        <translation>再試行</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>好</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>正在检查更新…</source>
        <translation>アップデートを確認中…</translation>
    </message>
    <message>
        <source>有新版本：Nivora %1</source>
        <translation>新しいバージョン: Nivora %1</translation>
    </message>
    <message>
        <source>已是最新版本</source>
        <translation>最新バージョンです</translation>
    </message>
    <message>
        <source>无法检查更新</source>
        <translation>アップデートを確認できません</translation>
    </message>
    <message>
        <source>没有找到浏览器</source>
        <translation>ブラウザーが見つかりません</translation>
    </message>
    <message>
        <source>你正在使用 %1。</source>
        <translation>現在のバージョンは %1 です。</translation>
    </message>
    <message>
        <source>没有比 Nivora %1 更新的版本。</source>
        <translation>Nivora %1 より新しいバージョンはありません。</translation>
    </message>
    <message>
        <source>新版本在 %1</source>
        <translation>新しいバージョン: %1</translation>
    </message>
    <message>
        <source>软件包 %1 附有签名，安装前请核对。</source>
        <translation>パッケージ %1 は署名付きです。インストール前に確認してください。</translation>
    </message>
    <message>
        <source>软件包 %1 没有签名。</source>
        <translation>署名のないパッケージ: %1</translation>
    </message>
</context>
<context>
    <name>nivora::Updater</name>
    <message>
        <source>更新服务器没有给出版本列表</source>
        <translation>更新サーバーにバージョンの一覧がありません</translation>
    </message>
</context>
<context>
    <name>nivora::UsageSettingsSection</name>
    <message>
        <source>用量统计</source>
        <translation>使用量</translation>
    </message>
    <message>
        <source>翻译请求</source>
        <translation>翻訳リクエスト</translation>
    </message>
    <message>
        <source>输入 tokens</source>
        <translation>入力トークン</translation>
    </message>
    <message>
        <source>输出 tokens</source>
        <translation>出力トークン</translation>
    </message>
    <message>
        <source>合计 tokens</source>
        <translation>合計トークン</translation>
    </message>
    <message>
        <source>重置</source>
        <translation>リセット</translation>
    </message>
    <message>
        <source>%1 次</source>
        <comment>request count value</comment>
        <translation>%1 回</translation>
    </message>
    <message>
        <source>自 %1 起统计</source>
        <comment>tracking since date</comment>
        <translation>%1 から集計</translation>
    </message>
</context>
<context>
    <name>nivora::VersionHistoryView</name>
    <message>
        <source>无法加载版本历史</source>
        <translation>バージョン履歴を読み込めません</translation>
    </message>
    <message>
        <source>选择左侧版本查看更新说明</source>
        <translation>左のバージョンを選ぶとリリースノートを表示します</translation>
    </message>
    <message>
        <source>版本</source>
        <translation>バージョン</translation>
    </message>
</context>
<context>
    <name>nivora::VersionHistoryWindowController</name>
    <message>
        <source>版本历史</source>
        <comment>version history window title</comment>
        <translation>バージョン履歴</translation>
    </message>
</context>
<context>
    <name>nivora::VoiceInput</name>
    <message>
        <source>没有找到系统设置程序</source>
        <translation>システム設定が見つかりません</translation>
    </message>
</context>
<context>
    <name>nivora::WelcomePage</name>
    <message>
        <source>选中任意文字，**双击 Shift**，立即翻译。读懂、写出、回填，一气呵成。</source>
        <extracomment>Markdown</extracomment>
        <translation>テキストを選択して **Shift を 2 回押す**だけで、すぐに翻訳。読む、書く、元の場所に戻すまで一気にできます。</translation>
    </message>
    <message>
        <source>开始</source>
        <translation>はじめる</translation>
    </message>
    <message>
        <source>欢迎使用 Nivora</source>
        <translation>Nivora へようこそ</translation>
    </message>
    <message>
        <source>现在就试试：双击 Shift 即可继续</source>
        <translation>さっそくお試しください。Shift を 2 回押すと次へ進みます</translation>
    </message>
</context>
</TS>
