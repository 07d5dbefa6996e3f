<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>AccessibilityPermission</name>
    <message>
        <source>Nivora 需要辅助功能权限</source>
        <translation>Nivora needs accessibility access</translation>
    </message>
    <message>
        <source>开启后，桌面会把选中的文字和它的位置告诉 Nivora，双击 Shift 才可用。将为本次会话打开辅助功能服务（AT-SPI）；已在运行的程序可能要重新启动后才会响应。</source>
        <translation>The desktop then tells Nivora which text is selected and where, which double-tapping Shift relies on. The accessibility service (AT-SPI) is switched on for this session; programs already running may have to be restarted before they respond.</translation>
    </message>
    <message>
        <source>开启</source>
        <translation>Turn on</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>辅助功能服务没有响应</source>
        <translation>The accessibility service does not respond</translation>
    </message>
    <message>
        <source>请确认已安装 at-spi2-core 并且会话总线可用。在此之前可以使用 ⌃⌥O。</source>
        <translation>Make sure that at-spi2-core is installed and the session bus is available. Until then, you can use Ctrl+Alt+O.</translation>
    </message>
    <message>
        <source>好</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>没有找到系统设置程序</source>
        <translation>No settings program was found</translation>
    </message>
    <message>
        <source>Nivora 可以直接打开辅助功能服务（AT-SPI）。</source>
        <translation>Nivora can switch on the accessibility service (AT-SPI) itself.</translation>
    </message>
    <message>
        <source>辅助功能服务（AT-SPI）已经打开。</source>
        <translation>The accessibility service (AT-SPI) is on already.</translation>
    </message>
</context>
<context>
    <name>AuthError</name>
    <message>
        <source>登录服务返回错误 (HTTP %1)。</source>
        <translation>The sign-in service returned an error (HTTP %1).</translation>
    </message>
    <message>
        <source>网络错误：%1</source>
        <translation>Network error: %1</translation>
    </message>
    <message>
        <source>登录服务响应异常，请重试。</source>
        <translation>The sign-in service gave an unexpected answer. Please try again.</translation>
    </message>
</context>
<context>
    <name>AuthFlowError</name>
    <message>
        <source>已取消登录。</source>
        <translation>Sign-in was cancelled.</translation>
    </message>
    <message>
        <source>无法打开登录页面。</source>
        <translation>The sign-in page could not be opened.</translation>
    </message>
    <message>
        <source>无法保存登录状态：系统密钥环不可用。</source>
        <translation>Your sign-in could not be saved: the system keyring is not available.</translation>
    </message>
</context>
<context>
    <name>BillingStatus</name>
    <message>
        <source>免费档</source>
        <comment>free plan</comment>
        <translation>Free</translation>
    </message>
</context>
<context>
    <name>ConnectionTest</name>
    <message>
        <source>服务拒绝了 API Key (HTTP %1)。</source>
        <translation>The service rejected the API key (HTTP %1).</translation>
    </message>
    <message>
        <source>服务没有 v1/chat/completions，或不认识该模型 (HTTP %1)。</source>
        <translation>The service has no v1/chat/completions or does not know this model (HTTP %1).</translation>
    </message>
    <message>
        <source>服务可以连接，但请求过多或额度用尽 (HTTP %1)。</source>
        <translation>The service can be reached, but there were too many requests or the quota is used up (HTTP %1).</translation>
    </message>
    <message>
        <source>模型不在服务的列表中</source>
        <translation>model not in the service’s list</translation>
    </message>
    <message>
        <source>服务可以连接，但没有以流式返回文字，无法用于翻译。</source>
        <translation>The service can be reached, but it does not stream its text and cannot be used for translation.</translation>
    </message>
    <message>
        <source>连接正常（%1 毫秒）</source>
        <translation>Connected (%1 ms)</translation>
    </message>
    <message>
        <source>模型可用</source>
        <translation>model available</translation>
    </message>
    <message>
        <source>支持流式</source>
        <translation>streams</translation>
    </message>
    <message>
        <source>报告用量</source>
        <translation>reports usage</translation>
    </message>
    <message>
        <source>不报告用量</source>
        <translation>does not report usage</translation>
    </message>
</context>
<context>
    <name>FeedbackReason</name>
    <message>
        <source>翻译错误</source>
        <comment>feedback reason: mistranslation</comment>
        <translation>Mistranslation</translation>
    </message>
    <message>
        <source>漏译</source>
        <comment>feedback reason: omission</comment>
        <translation>Omission</translation>
    </message>
    <message>
        <source>数字错误</source>
        <comment>feedback reason: number error</comment>
        <translation>Wrong number</translation>
    </message>
    <message>
        <source>语气不对</source>
        <comment>feedback reason: wrong tone</comment>
        <translation>Wrong tone</translation>
    </message>
    <message>
        <source>无法替换/插入译文</source>
        <comment>feedback reason: cannot replace or insert</comment>
        <translation>Can’t replace or insert</translation>
    </message>
    <message>
        <source>其他</source>
        <comment>feedback reason: other</comment>
        <translation>Other</translation>
    </message>
</context>
<context>
    <name>Language</name>
    <message>
        <source>中文</source>
        <comment>language name: Chinese</comment>
        <translation>Chinese</translation>
    </message>
    <message>
        <source>日本語</source>
        <comment>language name: Japanese</comment>
        <translation>Japanese</translation>
    </message>
    <message>
        <source>English</source>
        <comment>language name: English</comment>
        <translation>English</translation>
    </message>
    <message>
        <source>韩语</source>
        <comment>language name: Korean</comment>
        <translation>Korean</translation>
    </message>
    <message>
        <source>繁体中文</source>
        <comment>language name: Traditional Chinese</comment>
        <translation>Traditional Chinese</translation>
    </message>
    <message>
        <source>粤语</source>
        <comment>language name: Cantonese</comment>
        <translation>Cantonese</translation>
    </message>
    <message>
        <source>自动</source>
        <comment>auto-detect source language</comment>
        <translation>Auto</translation>
    </message>
    <message>
        <source>罗马字</source>
        <comment>target: romaji transcription</comment>
        <translation>Romaji</translation>
    </message>
    <message>
        <source>平假名</source>
        <comment>reading: hiragana transcription</comment>
        <translation>Hiragana</translation>
    </message>
</context>
<context>
    <name>NetworkFault</name>
    <message>
        <source>请求超时</source>
        <translation>The request timed out</translation>
    </message>
    <message>
        <source>无法连接服务器</source>
        <translation>The server could not be reached</translation>
    </message>
    <message>
        <source>没有网络连接</source>
        <translation>There is no network connection</translation>
    </message>
    <message>
        <source>连接已中断</source>
        <translation>The connection was lost</translation>
    </message>
</context>
<context>
    <name>NivoraApp</name>
    <message>
        <source>没能写回原来的窗口，译文已放在剪贴板里，可以直接粘贴。</source>
        <translation>The text could not be put back into its window. The translation is on the clipboard, ready to paste.</translation>
    </message>
    <message>
        <source>没有找到可以打开网页的浏览器。</source>
        <translation>No browser was found to open the page.</translation>
    </message>
    <message>
        <source>这个桌面没有系统托盘，所以看不到 Nivora 的图标。双击 Shift 照常翻译；翻译历史、设置等，在应用菜单里右键点按 Nivora 就能打开。</source>
        <translation>This desktop has no system tray, so the Nivora icon cannot be seen. Double-tapping Shift translates as usual; for the history, the settings and more, right-click Nivora in the application menu.</translation>
    </message>
</context>
<context>
    <name>ScreenCapture</name>
    <message>
        <source>拖动选出要翻译的文字 · 按住空格可移动 · Esc 取消</source>
        <translation>Drag over the text to translate · hold Space to move · Esc cancels</translation>
    </message>
    <message>
        <source>截图翻译</source>
        <translation>Translate a screenshot</translation>
    </message>
</context>
<context>
    <name>TranslationError</name>
    <message>
        <source>密钥含有无法发送的字符</source>
        <comment>error: control characters in the API key</comment>
        <translation>The API key contains characters that cannot be sent</translation>
    </message>
    <message>
        <source>无效响应</source>
        <comment>error: invalid response</comment>
        <translation>Invalid response</translation>
    </message>
    <message>
        <source>服务返回错误 (HTTP %1)。</source>
        <comment>error: http status</comment>
        <translation>The service returned an error (HTTP %1).</translation>
    </message>
    <message>
        <source>网络错误：%1</source>
        <comment>error: network</comment>
        <translation>Network error: %1</translation>
    </message>
    <message>
        <source>未收到译文，请重试。</source>
        <comment>error: empty response</comment>
        <translation>No translation was received. Please try again.</translation>
    </message>
    <message>
        <source>请求超时（模型可能正在加载，请重试）。</source>
        <comment>error: timeout</comment>
        <translation>The request timed out. The model may still be loading; please try again.</translation>
    </message>
    <message>
        <source>无法连接翻译服务，请检查网络或服务地址。</source>
        <comment>error: cannot connect</comment>
        <translation>The translation service could not be reached. Check the network or the service address.</translation>
    </message>
</context>
<context>
    <name>UpdateServer</name>
    <message>
        <source>更新服务器把请求转到了别处</source>
        <translation>The update server redirected the request elsewhere</translation>
    </message>
    <message>
        <source>这个地址不在更新服务器上</source>
        <translation>This address is not on the update server</translation>
    </message>
</context>
<context>
    <name>nivora::AccessibilityPage</name>
    <message>
        <source>继续</source>
        <translation>Continue</translation>
    </message>
    <message>
        <source>已授权</source>
        <translation>Allowed</translation>
    </message>
    <message>
        <source>开启辅助功能</source>
        <translation>Turn on accessibility</translation>
    </message>
    <message>
        <source>Nivora 需要它来读取选中的文字、模拟粘贴回填。</source>
        <translation>Nivora needs it to read the text you select
and to paste translations back.</translation>
    </message>
    <message>
        <source>打开系统设置授权…</source>
        <translation>Allow in system settings…</translation>
    </message>
    <message>
        <source>授权后会自动继续</source>
        <translation>Continues by itself once allowed</translation>
    </message>
    <message>
        <source>稍后再说</source>
        <translation>Not now</translation>
    </message>
</context>
<context>
    <name>nivora::AppCoordinator</name>
    <message>
        <source>需要屏幕录制权限</source>
        <translation>Permission to capture the screen is needed</translation>
    </message>
    <message>
        <source>「截图翻译」需要屏幕录制权限。请在系统设置→隐私与安全性→屏幕录制中开启 Nivora，然后重新启动 App。</source>
        <translation>Translating a screenshot needs permission to capture the screen. Allow screenshots for Nivora among the app permissions in the system settings, then restart Nivora.</translation>
    </message>
    <message>
        <source>打开系统设置</source>
        <translation>Open system settings</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>没有找到系统设置程序</source>
        <translation>No settings program was found</translation>
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
        <translation>The browser could not be opened.</translation>
    </message>
</context>
<context>
    <name>nivora::ComposeInput</name>
    <message>
        <source>原文</source>
        <translation>Source text</translation>
    </message>
    <message>
        <source>打开设置</source>
        <translation>Open settings</translation>
    </message>
    <message>
        <source>停止语音输入</source>
        <translation>Stop dictation</translation>
    </message>
    <message>
        <source>语音输入（说话转文字）</source>
        <translation>Dictate (speech to text)</translation>
    </message>
    <message>
        <source>语音输入</source>
        <translation>Dictation</translation>
    </message>
    <message>
        <source>翻译中…</source>
        <translation>Translating…</translation>
    </message>
    <message>
        <source>翻译  ⌘↩</source>
        <translation>Translate  Ctrl+↩</translation>
    </message>
    <message>
        <source>翻译</source>
        <translation>Translate</translation>
    </message>
</context>
<context>
    <name>nivora::ContextPopover</name>
    <message>
        <source>背景</source>
        <translation>Context</translation>
    </message>
    <message>
        <source>回复对方消息时，填入对方的话作为语境，译文更贴切</source>
        <translation>Replying to someone? Put their words here, and the translation will fit better</translation>
    </message>
    <message>
        <source>背景（可选，如对方的消息）</source>
        <translation>Context (optional, such as the other person’s message)</translation>
    </message>
    <message>
        <source>清除</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>完成</source>
        <translation>Done</translation>
    </message>
</context>
<context>
    <name>nivora::FeedbackForm</name>
    <message>
        <source>反馈译文问题</source>
        <translation>Report a problem</translation>
    </message>
    <message>
        <source>问题类型</source>
        <translation>Kind of problem</translation>
    </message>
    <message>
        <source>补充说明（可选）</source>
        <translation>Comment (optional)</translation>
    </message>
    <message>
        <source>提交失败，请稍后再试</source>
        <translation>Could not be sent. Please try again later</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>提交</source>
        <translation>Send</translation>
    </message>
    <message>
        <source>反馈经审核有效后，双倍返还本次消耗的额度。</source>
        <translation>Once your report is confirmed, you get back twice what this translation cost.</translation>
    </message>
    <message>
        <source>已提交，感谢反馈</source>
        <translation>Sent. Thank you for your report</translation>
    </message>
    <message>
        <source>审核有效后将双倍返还本次消耗的额度。</source>
        <translation>Once it is confirmed, you get back twice what this translation cost.</translation>
    </message>
    <message>
        <source>完成</source>
        <translation>Done</translation>
    </message>
</context>
<context>
    <name>nivora::FlowingText</name>
    <message>
        <source>复制</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>全选</source>
        <translation>Select all</translation>
    </message>
</context>
<context>
    <name>nivora::GlossaryModel</name>
    <message>
        <source>中文</source>
        <translation>Chinese</translation>
    </message>
    <message>
        <source>日本語</source>
        <translation>Japanese</translation>
    </message>
</context>
<context>
    <name>nivora::GlossarySettingsSection</name>
    <message>
        <source>术语表</source>
        <translation>Glossary</translation>
    </message>
    <message>
        <source>筛选术语</source>
        <translation>Filter terms</translation>
    </message>
    <message>
        <source>翻译时源文出现的术语会按此表固定译法（中↔日 双向）。</source>
        <translation>Terms in the source text are translated as listed here (Chinese ↔ Japanese, both ways).</translation>
    </message>
    <message numerus="yes">
        <source>已粘贴 %n 条新术语。</source>
        <translation>
            <numerusform>%n new term pasted.</numerusform>
            <numerusform>%n new terms pasted.</numerusform>
        </translation>
    </message>
    <message>
        <source>添加术语</source>
        <translation>Add term</translation>
    </message>
    <message>
        <source>导入…</source>
        <translation>Import…</translation>
    </message>
    <message>
        <source>导出…</source>
        <translation>Export…</translation>
    </message>
    <message>
        <source>导入术语表</source>
        <translation>Import glossary</translation>
    </message>
    <message>
        <source>表格文件 (*.csv *.tsv *.txt)</source>
        <translation>Table files (*.csv *.tsv *.txt)</translation>
    </message>
    <message>
        <source>所有文件 (*)</source>
        <translation>All files (*)</translation>
    </message>
    <message>
        <source>没能导入：不是 UTF-8 编码的 CSV 文件。</source>
        <translation>Could not be imported: this is not a CSV file in UTF-8.</translation>
    </message>
    <message numerus="yes">
        <source>已导入 %n 条新术语。</source>
        <translation>
            <numerusform>%n new term imported. </numerusform>
            <numerusform>%n new terms imported. </numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n 条已在表中。</source>
        <translation>
            <numerusform>%n was already listed.</numerusform>
            <numerusform>%n were already listed.</numerusform>
        </translation>
    </message>
    <message>
        <source>导出术语表</source>
        <translation>Export glossary</translation>
    </message>
    <message>
        <source>CSV 文件 (*.csv)</source>
        <translation>CSV files (*.csv)</translation>
    </message>
    <message numerus="yes">
        <source>已导出 %n 条术语。</source>
        <translation>
            <numerusform>%n term exported.</numerusform>
            <numerusform>%n terms exported.</numerusform>
        </translation>
    </message>
    <message>
        <source>没能导出：%1</source>
        <translation>Could not be exported: %1</translation>
    </message>
</context>
<context>
    <name>nivora::GlossaryTable</name>
    <message>
        <source>术语表</source>
        <translation>Glossary</translation>
    </message>
    <message>
        <source>还没有术语。可以逐条添加，也可以把成对的词粘贴到这里。</source>
        <translation>No terms yet. Add them one by one, or paste pairs of words here.</translation>
    </message>
    <message>
        <source>没有匹配的术语</source>
        <translation>No matching terms</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
</context>
<context>
    <name>nivora::HistoryList</name>
    <message>
        <source>翻译历史</source>
        <translation>Translation history</translation>
    </message>
    <message>
        <source>复制译文</source>
        <translation>Copy translation</translation>
    </message>
    <message>
        <source>复制原文</source>
        <translation>Copy source text</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
</context>
<context>
    <name>nivora::HistoryView</name>
    <message>
        <source>暂无翻译历史</source>
        <translation>No translations yet</translation>
    </message>
    <message>
        <source>没有结果</source>
        <translation>No results</translation>
    </message>
    <message>
        <source>翻译会自动记录在本地。可在设置里关闭或清空。</source>
        <translation>Translations are kept on this computer.
You can turn that off or clear them in the settings.</translation>
    </message>
    <message>
        <source>搜索原文或译文</source>
        <translation>Search source texts and translations</translation>
    </message>
    <message>
        <source>导出所示记录…</source>
        <translation>Export these entries…</translation>
    </message>
    <message>
        <source>清空</source>
        <translation>Clear all</translation>
    </message>
    <message>
        <source>没有与“%1”匹配的记录。</source>
        <translation>No entry matches “%1”.</translation>
    </message>
    <message>
        <source>导出所示记录</source>
        <translation>Export these entries</translation>
    </message>
    <message>
        <source>CSV 表格 (*.csv)</source>
        <translation>CSV files (*.csv)</translation>
    </message>
    <message>
        <source>JSON 文件 (*.json)</source>
        <translation>JSON files (*.json)</translation>
    </message>
    <message>
        <source>翻译历史</source>
        <translation>Translation history</translation>
    </message>
    <message>
        <source>没能导出翻译历史</source>
        <translation>The history could not be exported</translation>
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
        <translation>Translation history</translation>
    </message>
</context>
<context>
    <name>nivora::LoginView</name>
    <message>
        <source>登录 Nivora</source>
        <translation>Sign in to Nivora</translation>
    </message>
    <message>
        <source>登录后即可使用 Nivora 云端翻译。</source>
        <translation>Sign in to translate with Nivora Cloud.</translation>
    </message>
</context>
<context>
    <name>nivora::LoginWindowController</name>
    <message>
        <source>关闭面板</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>登录 Nivora</source>
        <translation>Sign in to Nivora</translation>
    </message>
</context>
<context>
    <name>nivora::MenuContent</name>
    <message>
        <source>⚠️ 未授予辅助功能权限，双击 Shift 不可用</source>
        <translation>⚠️ Double-tap Shift is off: accessibility is not allowed</translation>
    </message>
    <message>
        <source>打开系统设置授权…</source>
        <translation>Allow in system settings…</translation>
    </message>
    <message>
        <source>翻译面板</source>
        <translation>Translation panel</translation>
    </message>
    <message>
        <source>翻译历史…</source>
        <translation>Translation history…</translation>
    </message>
    <message>
        <source>设置…</source>
        <translation>Settings…</translation>
    </message>
    <message>
        <source>检查更新…</source>
        <translation>Check for updates…</translation>
    </message>
    <message>
        <source>关于</source>
        <translation>About</translation>
    </message>
    <message>
        <source>版本历史…</source>
        <translation>Version history…</translation>
    </message>
    <message>
        <source>访问官网</source>
        <translation>Visit website</translation>
    </message>
    <message>
        <source>登录…</source>
        <translation>Sign in…</translation>
    </message>
    <message>
        <source>登出</source>
        <translation>Sign out</translation>
    </message>
    <message>
        <source>退出 Nivora</source>
        <translation>Quit Nivora</translation>
    </message>
    <message>
        <source>截图翻译</source>
        <translation>Translate a screenshot</translation>
    </message>
</context>
<context>
    <name>nivora::NotesBrowser</name>
    <message>
        <source>更新说明</source>
        <translation>Release notes</translation>
    </message>
</context>
<context>
    <name>nivora::OnboardingWindowController</name>
    <message>
        <source>跳过</source>
        <translation>Skip</translation>
    </message>
    <message>
        <source>欢迎使用 Nivora</source>
        <translation>Welcome to Nivora</translation>
    </message>
</context>
<context>
    <name>nivora::PanelFooter</name>
    <message>
        <source>以对方原文为背景，撰写并翻译你的回复</source>
        <translation>Write and translate your reply, with the source text as context</translation>
    </message>
    <message>
        <source>朗读</source>
        <translation>Read aloud</translation>
    </message>
    <message>
        <source>复制译文</source>
        <translation>Copy translation</translation>
    </message>
    <message>
        <source>更多译文</source>
        <translation>More translations</translation>
    </message>
    <message>
        <source>反馈译文问题</source>
        <translation>Report a problem</translation>
    </message>
    <message>
        <source>回复</source>
        <translation>Reply</translation>
    </message>
    <message>
        <source>历史</source>
        <translation>History</translation>
    </message>
    <message>
        <source>复用了本地历史中的相同翻译，未重新请求</source>
        <translation>Taken from your history: the same text was translated before, so nothing was requested</translation>
    </message>
    <message>
        <source>⌘↩ 替换原文</source>
        <translation>Ctrl+↩ Replace</translation>
    </message>
    <message>
        <source>⌘↩ 插入到输入框</source>
        <translation>Ctrl+↩ Insert</translation>
    </message>
    <message>
        <source>已复制，粘到回复框</source>
        <translation>Copied, paste it in your reply</translation>
    </message>
    <message>
        <source>⌘↩ 复制，粘到回复框</source>
        <translation>Ctrl+↩ Copy for your reply</translation>
    </message>
    <message>
        <source>已复制</source>
        <translation>Copied</translation>
    </message>
    <message>
        <source>⌘↩ 复制</source>
        <translation>Ctrl+↩ Copy</translation>
    </message>
    <message>
        <source>语音服务不可用</source>
        <translation>The speech service is not available</translation>
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
        <translation>Context</translation>
    </message>
    <message>
        <source>关闭面板</source>
        <translation>Close panel</translation>
    </message>
    <message>
        <source>已钉住（失焦不关闭）</source>
        <translation>Pinned (stays open)</translation>
    </message>
    <message>
        <source>钉住</source>
        <translation>Pin</translation>
    </message>
</context>
<context>
    <name>nivora::ProgressPips</name>
    <message>
        <source>第 %1 步，共 %2 步</source>
        <translation>Step %1 of %2</translation>
    </message>
</context>
<context>
    <name>nivora::ReadyPage</name>
    <message>
        <source>完成</source>
        <translation>Done</translation>
    </message>
    <message>
        <source>双击 Shift</source>
        <translation>Double-tap Shift</translation>
    </message>
    <message>
        <source>在选中文字 / 任意输入框唤起</source>
        <translation>On selected text or in any text field</translation>
    </message>
    <message>
        <source>⌃⌥O</source>
        <translation>Ctrl+Alt+O</translation>
    </message>
    <message>
        <source>助记快捷键，效果相同</source>
        <translation>Does the same</translation>
    </message>
    <message>
        <source>准备就绪 🎉</source>
        <translation>All set 🎉</translation>
    </message>
    <message>
        <source>菜单栏的「N」里还有截图翻译与设置。</source>
        <translation>The “N” icon in the tray also holds
screenshot translation and settings.</translation>
    </message>
</context>
<context>
    <name>nivora::ReleaseNotesWebView</name>
    <message>
        <source>无法加载更新说明</source>
        <translation>The release notes could not be loaded</translation>
    </message>
</context>
<context>
    <name>nivora::ResultArea</name>
    <message>
        <source>翻译中</source>
        <translation>Translating</translation>
    </message>
    <message>
        <source>重试</source>
        <translation>Try again</translation>
    </message>
    <message>
        <source>输入文字，自动翻译。</source>
        <translation>Type something, and it is translated.</translation>
    </message>
</context>
<context>
    <name>nivora::ResultContent</name>
    <message>
        <source>译文</source>
        <translation>Translation</translation>
    </message>
    <message>
        <source>读音</source>
        <translation>Reading</translation>
    </message>
    <message>
        <source>回译</source>
        <translation>Back-translation</translation>
    </message>
    <message>
        <source>生成说法…</source>
        <translation>Finding other wordings…</translation>
    </message>
</context>
<context>
    <name>nivora::SettingsAccountTab</name>
    <message>
        <source>登录</source>
        <translation>Sign in</translation>
    </message>
    <message>
        <source>登录后即可使用 Nivora 云端翻译，用量与订阅随账户保存。</source>
        <translation>Sign in to translate with Nivora Cloud. Your usage and subscription stay with your account.</translation>
    </message>
    <message>
        <source>账户</source>
        <translation>Account</translation>
    </message>
    <message>
        <source>已登录</source>
        <translation>Signed in</translation>
    </message>
    <message>
        <source>登出</source>
        <translation>Sign out</translation>
    </message>
</context>
<context>
    <name>nivora::SettingsBackendSection</name>
    <message>
        <source>未填写时，请求会发往 Nivora 云端。</source>
        <translation>While this is empty, requests go to Nivora Cloud.</translation>
    </message>
    <message>
        <source>地址要以 http:// 或 https:// 开头。</source>
        <translation>The address must begin with http:// or https://.</translation>
    </message>
    <message>
        <source>地址里没有可用的主机名。</source>
        <translation>The address has no usable host name.</translation>
    </message>
    <message>
        <source>地址已以 /v1 结尾，而请求会自己加上 v1，通常应去掉。</source>
        <translation>The address ends in /v1, but requests add v1 themselves. It should usually be left out.</translation>
    </message>
    <message>
        <source>翻译服务</source>
        <translation>Translation service</translation>
    </message>
    <message>
        <source>把请求发往你自己的 OpenAI 兼容服务，登录态绝不外发。</source>
        <translation>Requests go to your own OpenAI-compatible service. Your Nivora sign-in is never sent there.</translation>
    </message>
    <message>
        <source>实时翻译</source>
        <translation>Live translation</translation>
    </message>
    <message>
        <source>开启后边输入边翻译；关闭则按 ⌘↩ 或「翻译」按钮手动触发，更省用量。</source>
        <translation>When on, text is translated as you type. When off, press Ctrl+↩ or Translate, which uses less of your quota.</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>请求超时</source>
        <translation>Request timeout</translation>
    </message>
    <message>
        <source>Nivora 云端</source>
        <translation>Nivora Cloud</translation>
    </message>
    <message>
        <source>自建后端（BYO）</source>
        <translation>Your own (BYO)</translation>
    </message>
    <message>
        <source>后端</source>
        <translation>Backend</translation>
    </message>
    <message>
        <source>由 Nivora 云端提供翻译，开箱即用。</source>
        <translation>Translations come from Nivora Cloud, with nothing to set up.</translation>
    </message>
    <message>
        <source>测试连接</source>
        <translation>Test</translation>
    </message>
    <message>
        <source>API 地址</source>
        <translation>API address</translation>
    </message>
    <message>
        <source>模型名</source>
        <translation>Model</translation>
    </message>
    <message>
        <source>API Key（可选）</source>
        <translation>API key (optional)</translation>
    </message>
    <message>
        <source>正在测试…</source>
        <translation>Testing…</translation>
    </message>
</context>
<context>
    <name>nivora::SettingsGeneralTab</name>
    <message>
        <source>快捷键</source>
        <translation>Shortcuts</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>双击 Shift 间隔</source>
        <translation>Double-tap Shift interval</translation>
    </message>
    <message>
        <source>外观</source>
        <translation>Appearance</translation>
    </message>
    <message>
        <source>跟随系统</source>
        <translation>Follow system</translation>
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
        <translation>App language</translation>
    </message>
    <message>
        <source>更改语言后需重启生效</source>
        <translation>Takes effect after a restart</translation>
    </message>
    <message>
        <source>立即重启</source>
        <translation>Restart now</translation>
    </message>
    <message>
        <source>主题</source>
        <translation>Theme</translation>
    </message>
    <message>
        <source>浅色</source>
        <translation>Light</translation>
    </message>
    <message>
        <source>深色</source>
        <translation>Dark</translation>
    </message>
    <message>
        <source>行为</source>
        <translation>Behaviour</translation>
    </message>
    <message>
        <source>失去焦点时关闭面板</source>
        <translation>Close the panel when it loses focus</translation>
    </message>
    <message>
        <source>翻译完成后自动复制</source>
        <translation>Copy each translation automatically</translation>
    </message>
    <message>
        <source>保存翻译历史（仅本地）</source>
        <translation>Keep a history (on this computer only)</translation>
    </message>
    <message>
        <source>开机自动启动</source>
        <translation>Start at login</translation>
    </message>
    <message>
        <source>朗读</source>
        <translation>Read aloud</translation>
    </message>
    <message>
        <source>翻译完成后自动朗读</source>
        <translation>Read each translation aloud</translation>
    </message>
    <message>
        <source>试听</source>
        <translation>Play a sample</translation>
    </message>
    <message>
        <source>语速</source>
        <translation>Speaking rate</translation>
    </message>
    <message>
        <source>日语语音</source>
        <translation>Japanese voice</translation>
    </message>
    <message>
        <source>更好的音质可在「系统设置 → 辅助功能 → 朗读内容」下载增强语音。</source>
        <translation>For better sound, install more voices for Speech Dispatcher.</translation>
    </message>
    <message>
        <source>自动（最佳）</source>
        <translation>Automatic (best)</translation>
    </message>
</context>
<context>
    <name>nivora::SettingsTranslationTab</name>
    <message>
        <source>自建后端提示模板</source>
        <translation>Prompt for your own backend</translation>
    </message>
    <message>
        <source>可用变量：{{text}} {{target}} {{source}} {{style}} {{background}} {{glossary}}。仅 BYO（自建后端）时生效。</source>
        <translation>Variables: {{text}} {{target}} {{source}} {{style}} {{background}} {{glossary}}. Used with your own backend (BYO) only.</translation>
    </message>
    <message>
        <source>恢复默认模板</source>
        <translation>Restore default</translation>
    </message>
    <message>
        <source>语言</source>
        <translation>Languages</translation>
    </message>
    <message>
        <source>我的语言</source>
        <translation>My language</translation>
    </message>
    <message>
        <source>我用母语书写时，译成</source>
        <translation>Translate what I write into</translation>
    </message>
    <message>
        <source>外语自动译成「我的语言」；当源文本身已是我的语言时，译成上面选的语言。每次翻译都可在面板里临时改方向。</source>
        <translation>Foreign text is translated into your language, your own language into the one chosen above. The panel lets you change that each time.</translation>
    </message>
    <message>
        <source>日语增强</source>
        <translation>Japanese</translation>
    </message>
    <message>
        <source>读音显示</source>
        <translation>Reading</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Off</translation>
    </message>
    <message>
        <source>罗马音</source>
        <translation>Romaji</translation>
    </message>
    <message>
        <source>平假名</source>
        <translation>Hiragana</translation>
    </message>
    <message>
        <source>书写日语风格</source>
        <translation>Style of Japanese</translation>
    </message>
    <message>
        <source>默认</source>
        <translation>Default</translation>
    </message>
    <message>
        <source>礼貌</source>
        <translation>Polite</translation>
    </message>
    <message>
        <source>商务敬语</source>
        <translation>Business</translation>
    </message>
    <message>
        <source>写日语时显示中文回译（校验原意）</source>
        <translation>Show my Japanese translated back into Chinese</translation>
    </message>
    <message>
        <source>仅在涉及日语时生效。</source>
        <translation>Applies only where Japanese is involved.</translation>
    </message>
</context>
<context>
    <name>nivora::SettingsWindow</name>
    <message>
        <source>Nivora 设置</source>
        <translation>Nivora settings</translation>
    </message>
    <message>
        <source>通用</source>
        <translation>General</translation>
    </message>
    <message>
        <source>翻译</source>
        <translation>Translation</translation>
    </message>
    <message>
        <source>账户</source>
        <translation>Account</translation>
    </message>
</context>
<context>
    <name>nivora::SignInForm</name>
    <message>
        <source>用 Google 登录</source>
        <translation>Sign in with Google</translation>
    </message>
    <message>
        <source>邮箱</source>
        <translation>Email</translation>
    </message>
    <message>
        <source>6 位验证码</source>
        <translation>6-digit code</translation>
    </message>
    <message>
        <source>返回</source>
        <translation>Back</translation>
    </message>
    <message>
        <source>请在浏览器中完成登录</source>
        <translation>Finish signing in in your browser</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>或</source>
        <translation>or</translation>
    </message>
    <message>
        <source>发送中…</source>
        <translation>Sending…</translation>
    </message>
    <message>
        <source>发送验证码</source>
        <translation>Send code</translation>
    </message>
    <message>
        <source>验证码已发送到 %1，请查收邮箱。</source>
        <extracomment>OTP code sent to email</extracomment>
        <translation>A code was sent to %1.
Please check your email.</translation>
    </message>
    <message>
        <source>登录中…</source>
        <translation>Signing in…</translation>
    </message>
    <message>
        <source>登录</source>
        <translation>Sign in</translation>
    </message>
</context>
<context>
    <name>nivora::SignInPage</name>
    <message>
        <source>继续</source>
        <translation>Continue</translation>
    </message>
    <message>
        <source>已登录</source>
        <translation>Signed in</translation>
    </message>
    <message>
        <source>登录</source>
        <translation>Sign in</translation>
    </message>
    <message>
        <source>你的用量与订阅随账户保存。</source>
        <translation>Your usage and subscription stay with your account.</translation>
    </message>
</context>
<context>
    <name>nivora::SpeechInputService</name>
    <message>
        <source>需要麦克风和语音识别权限</source>
        <translation>Permission for the microphone and speech recognition is needed</translation>
    </message>
    <message>
        <source>当前语言的语音识别暂不可用</source>
        <translation>Speech recognition is not available for this language</translation>
    </message>
    <message>
        <source>没有找到麦克风</source>
        <translation>No microphone was found</translation>
    </message>
    <message>
        <source>无法打开麦克风</source>
        <translation>The microphone could not be opened</translation>
    </message>
    <message>
        <source>麦克风已断开</source>
        <translation>The microphone was disconnected</translation>
    </message>
    <message>
        <source>语音识别模型无法读取</source>
        <translation>The speech recognition model could not be read</translation>
    </message>
    <message>
        <source>语音识别出错</source>
        <translation>Speech recognition failed</translation>
    </message>
</context>
<context>
    <name>nivora::SubscriptionSettingsSection</name>
    <message>
        <source>订阅</source>
        <translation>Subscription</translation>
    </message>
    <message>
        <source>用量统计</source>
        <translation>Usage</translation>
    </message>
    <message>
        <source>刷新</source>
        <translation>Refresh</translation>
    </message>
    <message>
        <source>加载中…</source>
        <translation>Loading…</translation>
    </message>
    <message>
        <source>暂无订阅信息</source>
        <translation>No subscription information</translation>
    </message>
    <message>
        <source>本期于 %1 重置</source>
        <comment>billing period reset date</comment>
        <translation>Resets on %1</translation>
    </message>
    <message>
        <source>管理订阅</source>
        <translation>Manage subscription</translation>
    </message>
    <message>
        <source>升级到 Pro</source>
        <translation>Upgrade to Pro</translation>
    </message>
</context>
<context>
    <name>nivora::UpdateWindow</name>
    <message>
        <source>软件更新</source>
        <translation>Software update</translation>
    </message>
    <message>
        <source>版本历史</source>
        <translation>Version history</translation>
    </message>
    <message>
        <source>跳过此版本</source>
        <translation>Skip this version</translation>
    </message>
    <message>
        <source>以后提醒</source>
        <translation>Remind me later</translation>
    </message>
    <message>
        <source>打开下载页</source>
        <translation>Open download page</translation>
    </message>
    <message>
        <source>重试</source>
        <translation>Try again</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>好</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>正在检查更新…</source>
        <translation>Checking for updates…</translation>
    </message>
    <message>
        <source>有新版本：Nivora %1</source>
        <translation>Nivora %1 is available</translation>
    </message>
    <message>
        <source>已是最新版本</source>
        <translation>You’re up to date</translation>
    </message>
    <message>
        <source>无法检查更新</source>
        <translation>Updates could not be checked</translation>
    </message>
    <message>
        <source>没有找到浏览器</source>
        <translation>No browser was found</translation>
    </message>
    <message>
        <source>你正在使用 %1。</source>
        <translation>You are using %1.</translation>
    </message>
    <message>
        <source>没有比 Nivora %1 更新的版本。</source>
        <translation>There is no version newer than Nivora %1.</translation>
    </message>
    <message>
        <source>新版本在 %1</source>
        <translation>The new version is at %1</translation>
    </message>
    <message>
        <source>软件包 %1 附有签名，安装前请核对。</source>
        <translation>The package %1 is signed. Check the signature before you install it.</translation>
    </message>
    <message>
        <source>软件包 %1 没有签名。</source>
        <translation>The package %1 is not signed.</translation>
    </message>
</context>
<context>
    <name>nivora::Updater</name>
    <message>
        <source>更新服务器没有给出版本列表</source>
        <translation>The update server gave no list of versions</translation>
    </message>
</context>
<context>
    <name>nivora::UsageSettingsSection</name>
    <message>
        <source>用量统计</source>
        <translation>Usage</translation>
    </message>
    <message>
        <source>翻译请求</source>
        <translation>Translation requests</translation>
    </message>
    <message>
        <source>输入 tokens</source>
        <translation>Input tokens</translation>
    </message>
    <message>
        <source>输出 tokens</source>
        <translation>Output tokens</translation>
    </message>
    <message>
        <source>合计 tokens</source>
        <translation>Total tokens</translation>
    </message>
    <message>
        <source>重置</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>%1 次</source>
        <comment>request count value</comment>
        <translation>%1</translation>
    </message>
    <message>
        <source>自 %1 起统计</source>
        <comment>tracking since date</comment>
        <translation>Counted since %1</translation>
    </message>
</context>
<context>
    <name>nivora::VersionHistoryView</name>
    <message>
        <source>无法加载版本历史</source>
        <translation>The version history could not be loaded</translation>
    </message>
    <message>
        <source>选择左侧版本查看更新说明</source>
        <translation>Choose a version on the left to read its notes</translation>
    </message>
    <message>
        <source>版本</source>
        <translation>Versions</translation>
    </message>
</context>
<context>
    <name>nivora::VersionHistoryWindowController</name>
    <message>
        <source>版本历史</source>
        <comment>version history window title</comment>
        <translation>Version history</translation>
    </message>
</context>
<context>
    <name>nivora::VoiceInput</name>
    <message>
        <source>没有找到系统设置程序</source>
        <translation>No settings program was found</translation>
    </message>
</context>
<context>
    <name>nivora::WelcomePage</name>
    <message>
        <source>选中任意文字，**双击 Shift**，立即翻译。读懂、写出、回填，一气呵成。</source>
        <extracomment>Markdown</extracomment>
        <translation>Select any text, **double-tap Shift**, and it is translated. Read, write and put it back.</translation>
    </message>
    <message>
        <source>开始</source>
        <translation>Get started</translation>
    </message>
    <message>
        <source>欢迎使用 Nivora</source>
        <translation>Welcome to Nivora</translation>
    </message>
    <message>
        <source>现在就试试：双击 Shift 即可继续</source>
        <translation>Try it now: double-tap Shift to continue</translation>
    </message>
</context>
</TS>
