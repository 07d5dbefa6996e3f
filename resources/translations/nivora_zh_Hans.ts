<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="zh_CN">
<context>
    <name>AccessibilityPermission</name>
    <message>
        <source>Nivora 需要辅助功能权限</source>
        <translation>Nivora 需要辅助功能权限</translation>
    </message>
    <message>
        <source>开启后，桌面会把选中的文字和它的位置告诉 Nivora，双击 Shift 才可用。将为本次会话打开辅助功能服务（AT-SPI）；已在运行的程序可能要重新启动后才会响应。</source>
        <translation>开启后，桌面会把选中的文字和它的位置告诉 Nivora，双击 Shift 才可用。将为本次会话打开辅助功能服务（AT-SPI）；已在运行的程序可能要重新启动后才会响应。</translation>
    </message>
    <message>
        <source>开启</source>
        <translation>开启</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>辅助功能服务没有响应</source>
        <translation>辅助功能服务没有响应</translation>
    </message>
    <message>
        <source>请确认已安装 at-spi2-core 并且会话总线可用。在此之前可以使用 ⌃⌥O。</source>
        <translation>请确认已安装 at-spi2-core 并且会话总线可用。在此之前可以使用 Ctrl+Alt+O。</translation>
    </message>
    <message>
        <source>好</source>
        <translation>好</translation>
    </message>
    <message>
        <source>没有找到系统设置程序</source>
        <translation>没有找到系统设置程序</translation>
    </message>
    <message>
        <source>Nivora 可以直接打开辅助功能服务（AT-SPI）。</source>
        <translation>Nivora 可以直接打开辅助功能服务（AT-SPI）。</translation>
    </message>
    <message>
        <source>辅助功能服务（AT-SPI）已经打开。</source>
        <translation>辅助功能服务（AT-SPI）已经打开。</translation>
    </message>
</context>
<context>
    <name>AuthError</name>
    <message>
        <source>登录服务返回错误 (HTTP %1)。</source>
        <translation>登录服务返回错误 (HTTP %1)。</translation>
    </message>
    <message>
        <source>网络错误：%1</source>
        <translation>网络错误：%1</translation>
    </message>
    <message>
        <source>登录服务响应异常，请重试。</source>
        <translation>登录服务响应异常，请重试。</translation>
    </message>
</context>
<context>
    <name>AuthFlowError</name>
    <message>
        <source>已取消登录。</source>
        <translation>已取消登录。</translation>
    </message>
    <message>
        <source>无法打开登录页面。</source>
        <translation>无法打开登录页面。</translation>
    </message>
    <message>
        <source>无法保存登录状态：系统密钥环不可用。</source>
        <translation>无法保存登录状态：系统密钥环不可用。</translation>
    </message>
</context>
<context>
    <name>BillingStatus</name>
    <message>
        <source>免费档</source>
        <comment>free plan</comment>
        <translation>免费档</translation>
    </message>
</context>
<context>
    <name>ConnectionTest</name>
    <message>
        <source>服务拒绝了 API Key (HTTP %1)。</source>
        <translation>服务拒绝了 API Key (HTTP %1)。</translation>
    </message>
    <message>
        <source>服务没有 v1/chat/completions，或不认识该模型 (HTTP %1)。</source>
        <translation>服务没有 v1/chat/completions，或不认识该模型 (HTTP %1)。</translation>
    </message>
    <message>
        <source>服务可以连接，但请求过多或额度用尽 (HTTP %1)。</source>
        <translation>服务可以连接，但请求过多或额度用尽 (HTTP %1)。</translation>
    </message>
    <message>
        <source>模型不在服务的列表中</source>
        <translation>模型不在服务的列表中</translation>
    </message>
    <message>
        <source>服务可以连接，但没有以流式返回文字，无法用于翻译。</source>
        <translation>服务可以连接，但没有以流式返回文字，无法用于翻译。</translation>
    </message>
    <message>
        <source>连接正常（%1 毫秒）</source>
        <translation>连接正常（%1 毫秒）</translation>
    </message>
    <message>
        <source>模型可用</source>
        <translation>模型可用</translation>
    </message>
    <message>
        <source>支持流式</source>
        <translation>支持流式</translation>
    </message>
    <message>
        <source>报告用量</source>
        <translation>报告用量</translation>
    </message>
    <message>
        <source>不报告用量</source>
        <translation>不报告用量</translation>
    </message>
</context>
<context>
    <name>FeedbackReason</name>
    <message>
        <source>翻译错误</source>
        <comment>feedback reason: mistranslation</comment>
        <translation>翻译错误</translation>
    </message>
    <message>
        <source>漏译</source>
        <comment>feedback reason: omission</comment>
        <translation>漏译</translation>
    </message>
    <message>
        <source>数字错误</source>
        <comment>feedback reason: number error</comment>
        <translation>数字错误</translation>
    </message>
    <message>
        <source>语气不对</source>
        <comment>feedback reason: wrong tone</comment>
        <translation>语气不对</translation>
    </message>
    <message>
        <source>无法替换/插入译文</source>
        <comment>feedback reason: cannot replace or insert</comment>
        <translation>无法替换/插入译文</translation>
    </message>
    <message>
        <source>其他</source>
        <comment>feedback reason: other</comment>
        <translation>其他</translation>
    </message>
</context>
<context>
    <name>Language</name>
    <message>
        <source>中文</source>
        <comment>language name: Chinese</comment>
        <translation>中文</translation>
    </message>
    <message>
        <source>日本語</source>
        <comment>language name: Japanese</comment>
        <translation>日本語</translation>
    </message>
    <message>
        <source>English</source>
        <comment>language name: English</comment>
        <translation>English</translation>
    </message>
    <message>
        <source>韩语</source>
        <comment>language name: Korean</comment>
        <translation>韩语</translation>
    </message>
    <message>
        <source>繁体中文</source>
        <comment>language name: Traditional Chinese</comment>
        <translation>繁体中文</translation>
    </message>
    <message>
        <source>粤语</source>
        <comment>language name: Cantonese</comment>
        <translation>粤语</translation>
    </message>
    <message>
        <source>自动</source>
        <comment>auto-detect source language</comment>
        <translation>自动</translation>
    </message>
    <message>
        <source>罗马字</source>
        <comment>target: romaji transcription</comment>
        <translation>罗马字</translation>
    </message>
    <message>
        <source>平假名</source>
        <comment>reading: hiragana transcription</comment>
        <translation>平假名</translation>
    </message>
</context>
<context>
    <name>NetworkFault</name>
    <message>
        <source>请求超时</source>
        <translation>请求超时</translation>
    </message>
    <message>
        <source>无法连接服务器</source>
        <translation>无法连接服务器</translation>
    </message>
    <message>
        <source>没有网络连接</source>
        <translation>没有网络连接</translation>
    </message>
    <message>
        <source>连接已中断</source>
        <translation>连接已中断</translation>
    </message>
</context>
<context>
    <name>NivoraApp</name>
    <message>
        <source>没能写回原来的窗口，译文已放在剪贴板里，可以直接粘贴。</source>
        <translation>没能写回原来的窗口，译文已放在剪贴板里，可以直接粘贴。</translation>
    </message>
    <message>
        <source>没有找到可以打开网页的浏览器。</source>
        <translation>没有找到可以打开网页的浏览器。</translation>
    </message>
    <message>
        <source>这个桌面没有系统托盘，所以看不到 Nivora 的图标。双击 Shift 照常翻译；翻译历史、设置等，在应用菜单里右键点按 Nivora 就能打开。</source>
        <translation>这个桌面没有系统托盘，所以看不到 Nivora 的图标。双击 Shift 照常翻译；翻译历史、设置等，在应用菜单里右键单击 Nivora 就能打开。</translation>
    </message>
</context>
<context>
    <name>ScreenCapture</name>
    <message>
        <source>拖动选出要翻译的文字 · 按住空格可移动 · Esc 取消</source>
        <translation>拖动选出要翻译的文字 · 按住空格可移动 · Esc 取消</translation>
    </message>
    <message>
        <source>截图翻译</source>
        <translation>截图翻译</translation>
    </message>
</context>
<context>
    <name>TranslationError</name>
    <message>
        <source>密钥含有无法发送的字符</source>
        <comment>error: control characters in the API key</comment>
        <translation>密钥含有无法发送的字符</translation>
    </message>
    <message>
        <source>无效响应</source>
        <comment>error: invalid response</comment>
        <translation>无效响应</translation>
    </message>
    <message>
        <source>服务返回错误 (HTTP %1)。</source>
        <comment>error: http status</comment>
        <translation>服务返回错误 (HTTP %1)。</translation>
    </message>
    <message>
        <source>网络错误：%1</source>
        <comment>error: network</comment>
        <translation>网络错误：%1</translation>
    </message>
    <message>
        <source>未收到译文，请重试。</source>
        <comment>error: empty response</comment>
        <translation>未收到译文，请重试。</translation>
    </message>
    <message>
        <source>请求超时（模型可能正在加载，请重试）。</source>
        <comment>error: timeout</comment>
        <translation>请求超时（模型可能正在加载，请重试）。</translation>
    </message>
    <message>
        <source>无法连接翻译服务，请检查网络或服务地址。</source>
        <comment>error: cannot connect</comment>
        <translation>无法连接翻译服务，请检查网络或服务地址。</translation>
    </message>
</context>
<context>
    <name>UpdateServer</name>
    <message>
        <source>更新服务器把请求转到了别处</source>
        <translation>更新服务器把请求转到了别处</translation>
    </message>
    <message>
        <source>这个地址不在更新服务器上</source>
        <translation>这个地址不在更新服务器上</translation>
    </message>
</context>
<context>
    <name>nivora::AccessibilityPage</name>
    <message>
        <source>继续</source>
        <translation>继续</translation>
    </message>
    <message>
        <source>已授权</source>
        <translation>已授权</translation>
    </message>
    <message>
        <source>开启辅助功能</source>
        <translation>开启辅助功能</translation>
    </message>
    <message>
        <source>Nivora 需要它来读取选中的文字、模拟粘贴回填。</source>
        <translation>Nivora 需要它来读取选中的文字、模拟粘贴回填。</translation>
    </message>
    <message>
        <source>打开系统设置授权…</source>
        <translation>打开系统设置授权…</translation>
    </message>
    <message>
        <source>授权后会自动继续</source>
        <translation>授权后会自动继续</translation>
    </message>
    <message>
        <source>稍后再说</source>
        <translation>稍后再说</translation>
    </message>
</context>
<context>
    <name>nivora::AppCoordinator</name>
    <message>
        <source>需要屏幕录制权限</source>
        <translation>需要截取屏幕的权限</translation>
    </message>
    <message>
        <source>「截图翻译」需要屏幕录制权限。请在系统设置→隐私与安全性→屏幕录制中开启 Nivora，然后重新启动 App。</source>
        <translation>「截图翻译」需要截取屏幕的权限。请在系统设置的应用权限中允许 Nivora 截图，然后重新启动 Nivora。</translation>
    </message>
    <message>
        <source>打开系统设置</source>
        <translation>打开系统设置</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>没有找到系统设置程序</source>
        <translation>没有找到系统设置程序</translation>
    </message>
    <message>
        <source>好</source>
        <translation>好</translation>
    </message>
</context>
<context>
    <name>nivora::BillingStore</name>
    <message>
        <source>无法打开浏览器。</source>
        <translation>无法打开浏览器。</translation>
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
        <translation>打开设置</translation>
    </message>
    <message>
        <source>停止语音输入</source>
        <translation>停止语音输入</translation>
    </message>
    <message>
        <source>语音输入（说话转文字）</source>
        <translation>语音输入（说话转文字）</translation>
    </message>
    <message>
        <source>语音输入</source>
        <translation>语音输入</translation>
    </message>
    <message>
        <source>翻译中…</source>
        <translation>翻译中…</translation>
    </message>
    <message>
        <source>翻译  ⌘↩</source>
        <translation>翻译  Ctrl+↩</translation>
    </message>
    <message>
        <source>翻译</source>
        <translation>翻译</translation>
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
        <translation>回复对方消息时，填入对方的话作为语境，译文更贴切</translation>
    </message>
    <message>
        <source>背景（可选，如对方的消息）</source>
        <translation>背景（可选，如对方的消息）</translation>
    </message>
    <message>
        <source>清除</source>
        <translation>清除</translation>
    </message>
    <message>
        <source>完成</source>
        <translation>完成</translation>
    </message>
</context>
<context>
    <name>nivora::FeedbackForm</name>
    <message>
        <source>反馈译文问题</source>
        <translation>反馈译文问题</translation>
    </message>
    <message>
        <source>问题类型</source>
        <translation>问题类型</translation>
    </message>
    <message>
        <source>补充说明（可选）</source>
        <translation>补充说明（可选）</translation>
    </message>
    <message>
        <source>提交失败，请稍后再试</source>
        <translation>提交失败，请稍后再试</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>提交</source>
        <translation>提交</translation>
    </message>
    <message>
        <source>反馈经审核有效后，双倍返还本次消耗的额度。</source>
        <translation>反馈经审核有效后，双倍返还本次消耗的额度。</translation>
    </message>
    <message>
        <source>已提交，感谢反馈</source>
        <translation>已提交，感谢反馈</translation>
    </message>
    <message>
        <source>审核有效后将双倍返还本次消耗的额度。</source>
        <translation>审核有效后将双倍返还本次消耗的额度。</translation>
    </message>
    <message>
        <source>完成</source>
        <translation>完成</translation>
    </message>
</context>
<context>
    <name>nivora::FlowingText</name>
    <message>
        <source>复制</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>全选</source>
        <translation>全选</translation>
    </message>
</context>
<context>
    <name>nivora::GlossaryModel</name>
    <message>
        <source>中文</source>
        <translation>中文</translation>
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
        <translation>术语表</translation>
    </message>
    <message>
        <source>筛选术语</source>
        <translation>筛选术语</translation>
    </message>
    <message>
        <source>翻译时源文出现的术语会按此表固定译法（中↔日 双向）。</source>
        <translation>翻译时源文出现的术语会按此表固定译法（中↔日 双向）。</translation>
    </message>
    <message numerus="yes">
        <source>已粘贴 %n 条新术语。</source>
        <translation>
            <numerusform>已粘贴 %n 条新术语。</numerusform>
        </translation>
    </message>
    <message>
        <source>添加术语</source>
        <translation>添加术语</translation>
    </message>
    <message>
        <source>导入…</source>
        <translation>导入…</translation>
    </message>
    <message>
        <source>导出…</source>
        <translation>导出…</translation>
    </message>
    <message>
        <source>导入术语表</source>
        <translation>导入术语表</translation>
    </message>
    <message>
        <source>表格文件 (*.csv *.tsv *.txt)</source>
        <translation>表格文件 (*.csv *.tsv *.txt)</translation>
    </message>
    <message>
        <source>所有文件 (*)</source>
        <translation>所有文件 (*)</translation>
    </message>
    <message>
        <source>没能导入：不是 UTF-8 编码的 CSV 文件。</source>
        <translation>没能导入：不是 UTF-8 编码的 CSV 文件。</translation>
    </message>
    <message numerus="yes">
        <source>已导入 %n 条新术语。</source>
        <translation>
            <numerusform>已导入 %n 条新术语。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n 条已在表中。</source>
        <translation>
            <numerusform>%n 条已在表中。</numerusform>
        </translation>
    </message>
    <message>
        <source>导出术语表</source>
        <translation>导出术语表</translation>
    </message>
    <message>
        <source>CSV 文件 (*.csv)</source>
        <translation>CSV 文件 (*.csv)</translation>
    </message>
    <message numerus="yes">
        <source>已导出 %n 条术语。</source>
        <translation>
            <numerusform>已导出 %n 条术语。</numerusform>
        </translation>
    </message>
    <message>
        <source>没能导出：%1</source>
        <translation>没能导出：%1</translation>
    </message>
</context>
<context>
    <name>nivora::GlossaryTable</name>
    <message>
        <source>术语表</source>
        <translation>术语表</translation>
    </message>
    <message>
        <source>还没有术语。可以逐条添加，也可以把成对的词粘贴到这里。</source>
        <translation>还没有术语。可以逐条添加，也可以把成对的词粘贴到这里。</translation>
    </message>
    <message>
        <source>没有匹配的术语</source>
        <translation>没有匹配的术语</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>删除</translation>
    </message>
</context>
<context>
    <name>nivora::HistoryList</name>
    <message>
        <source>翻译历史</source>
        <translation>翻译历史</translation>
    </message>
    <message>
        <source>复制译文</source>
        <translation>复制译文</translation>
    </message>
    <message>
        <source>复制原文</source>
        <translation>复制原文</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>删除</translation>
    </message>
</context>
<context>
    <name>nivora::HistoryView</name>
    <message>
        <source>暂无翻译历史</source>
        <translation>暂无翻译历史</translation>
    </message>
    <message>
        <source>没有结果</source>
        <translation>没有结果</translation>
    </message>
    <message>
        <source>翻译会自动记录在本地。可在设置里关闭或清空。</source>
        <translation>翻译会自动记录在本地。可在设置里关闭或清空。</translation>
    </message>
    <message>
        <source>搜索原文或译文</source>
        <translation>搜索原文或译文</translation>
    </message>
    <message>
        <source>导出所示记录…</source>
        <translation>导出所示记录…</translation>
    </message>
    <message>
        <source>清空</source>
        <translation>清空</translation>
    </message>
    <message>
        <source>没有与“%1”匹配的记录。</source>
        <translation>没有与“%1”匹配的记录。</translation>
    </message>
    <message>
        <source>导出所示记录</source>
        <translation>导出所示记录</translation>
    </message>
    <message>
        <source>CSV 表格 (*.csv)</source>
        <translation>CSV 表格 (*.csv)</translation>
    </message>
    <message>
        <source>JSON 文件 (*.json)</source>
        <translation>JSON 文件 (*.json)</translation>
    </message>
    <message>
        <source>翻译历史</source>
        <translation>翻译历史</translation>
    </message>
    <message>
        <source>没能导出翻译历史</source>
        <translation>没能导出翻译历史</translation>
    </message>
    <message>
        <source>好</source>
        <translation>好</translation>
    </message>
</context>
<context>
    <name>nivora::HistoryWindowController</name>
    <message>
        <source>翻译历史</source>
        <comment>translation history window title</comment>
        <translation>翻译历史</translation>
    </message>
</context>
<context>
    <name>nivora::LoginView</name>
    <message>
        <source>登录 Nivora</source>
        <translation>登录 Nivora</translation>
    </message>
    <message>
        <source>登录后即可使用 Nivora 云端翻译。</source>
        <translation>登录后即可使用 Nivora 云端翻译。</translation>
    </message>
</context>
<context>
    <name>nivora::LoginWindowController</name>
    <message>
        <source>关闭面板</source>
        <translation>关闭面板</translation>
    </message>
    <message>
        <source>登录 Nivora</source>
        <translation>登录 Nivora</translation>
    </message>
</context>
<context>
    <name>nivora::MenuContent</name>
    <message>
        <source>⚠️ 未授予辅助功能权限，双击 Shift 不可用</source>
        <translation>⚠️ 未授予辅助功能权限，双击 Shift 不可用</translation>
    </message>
    <message>
        <source>打开系统设置授权…</source>
        <translation>打开系统设置授权…</translation>
    </message>
    <message>
        <source>翻译面板</source>
        <translation>翻译面板</translation>
    </message>
    <message>
        <source>翻译历史…</source>
        <translation>翻译历史…</translation>
    </message>
    <message>
        <source>设置…</source>
        <translation>设置…</translation>
    </message>
    <message>
        <source>检查更新…</source>
        <translation>检查更新…</translation>
    </message>
    <message>
        <source>关于</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>版本历史…</source>
        <translation>版本历史…</translation>
    </message>
    <message>
        <source>访问官网</source>
        <translation>访问官网</translation>
    </message>
    <message>
        <source>登录…</source>
        <translation>登录…</translation>
    </message>
    <message>
        <source>登出</source>
        <translation>登出</translation>
    </message>
    <message>
        <source>退出 Nivora</source>
        <translation>退出 Nivora</translation>
    </message>
    <message>
        <source>截图翻译</source>
        <translation>截图翻译</translation>
    </message>
</context>
<context>
    <name>nivora::NotesBrowser</name>
    <message>
        <source>更新说明</source>
        <translation>更新说明</translation>
    </message>
</context>
<context>
    <name>nivora::OnboardingWindowController</name>
    <message>
        <source>跳过</source>
        <translation>跳过</translation>
    </message>
    <message>
        <source>欢迎使用 Nivora</source>
        <translation>欢迎使用 Nivora</translation>
    </message>
</context>
<context>
    <name>nivora::PanelFooter</name>
    <message>
        <source>以对方原文为背景，撰写并翻译你的回复</source>
        <translation>以对方原文为背景，撰写并翻译你的回复</translation>
    </message>
    <message>
        <source>朗读</source>
        <translation>朗读</translation>
    </message>
    <message>
        <source>复制译文</source>
        <translation>复制译文</translation>
    </message>
    <message>
        <source>更多译文</source>
        <translation>更多译文</translation>
    </message>
    <message>
        <source>反馈译文问题</source>
        <translation>反馈译文问题</translation>
    </message>
    <message>
        <source>回复</source>
        <translation>回复</translation>
    </message>
    <message>
        <source>历史</source>
        <translation>历史</translation>
    </message>
    <message>
        <source>复用了本地历史中的相同翻译，未重新请求</source>
        <translation>复用了本地历史中的相同翻译，未重新请求</translation>
    </message>
    <message>
        <source>⌘↩ 替换原文</source>
        <translation>Ctrl+↩ 替换原文</translation>
    </message>
    <message>
        <source>⌘↩ 插入到输入框</source>
        <translation>Ctrl+↩ 插入到输入框</translation>
    </message>
    <message>
        <source>已复制，粘到回复框</source>
        <translation>已复制，粘到回复框</translation>
    </message>
    <message>
        <source>⌘↩ 复制，粘到回复框</source>
        <translation>Ctrl+↩ 复制，粘到回复框</translation>
    </message>
    <message>
        <source>已复制</source>
        <translation>已复制</translation>
    </message>
    <message>
        <source>⌘↩ 复制</source>
        <translation>Ctrl+↩ 复制</translation>
    </message>
    <message>
        <source>语音服务不可用</source>
        <translation>语音服务不可用</translation>
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
        <translation>关闭面板</translation>
    </message>
    <message>
        <source>已钉住（失焦不关闭）</source>
        <translation>已钉住（失焦不关闭）</translation>
    </message>
    <message>
        <source>钉住</source>
        <translation>钉住</translation>
    </message>
</context>
<context>
    <name>nivora::ProgressPips</name>
    <message>
        <source>第 %1 步，共 %2 步</source>
        <translation>第 %1 步，共 %2 步</translation>
    </message>
</context>
<context>
    <name>nivora::ReadyPage</name>
    <message>
        <source>完成</source>
        <translation>完成</translation>
    </message>
    <message>
        <source>双击 Shift</source>
        <translation>双击 Shift</translation>
    </message>
    <message>
        <source>在选中文字 / 任意输入框唤起</source>
        <translation>在选中文字 / 任意输入框唤起</translation>
    </message>
    <message>
        <source>⌃⌥O</source>
        <translation>Ctrl+Alt+O</translation>
    </message>
    <message>
        <source>助记快捷键，效果相同</source>
        <translation>助记快捷键，效果相同</translation>
    </message>
    <message>
        <source>准备就绪 🎉</source>
        <translation>准备就绪 🎉</translation>
    </message>
    <message>
        <source>菜单栏的「N」里还有截图翻译与设置。</source>
        <translation>托盘图标「N」的菜单里还有截图翻译与设置。</translation>
    </message>
</context>
<context>
    <name>nivora::ReleaseNotesWebView</name>
    <message>
        <source>无法加载更新说明</source>
        <translation>无法加载更新说明</translation>
    </message>
</context>
<context>
    <name>nivora::ResultArea</name>
    <message>
        <source>翻译中</source>
        <translation>翻译中</translation>
    </message>
    <message>
        <source>重试</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>输入文字，自动翻译。</source>
        <translation>输入文字，自动翻译。</translation>
    </message>
</context>
<context>
    <name>nivora::ResultContent</name>
    <message>
        <source>译文</source>
        <translation>译文</translation>
    </message>
    <message>
        <source>读音</source>
        <translation>读音</translation>
    </message>
    <message>
        <source>回译</source>
        <translation>回译</translation>
    </message>
    <message>
        <source>生成说法…</source>
        <translation>生成说法…</translation>
    </message>
</context>
<context>
    <name>nivora::SettingsAccountTab</name>
    <message>
        <source>登录</source>
        <translation>登录</translation>
    </message>
    <message>
        <source>登录后即可使用 Nivora 云端翻译，用量与订阅随账户保存。</source>
        <translation>登录后即可使用 Nivora 云端翻译，用量与订阅随账户保存。</translation>
    </message>
    <message>
        <source>账户</source>
        <translation>账户</translation>
    </message>
    <message>
        <source>已登录</source>
        <translation>已登录</translation>
    </message>
    <message>
        <source>登出</source>
        <translation>登出</translation>
    </message>
</context>
<context>
    <name>nivora::SettingsBackendSection</name>
    <message>
        <source>未填写时，请求会发往 Nivora 云端。</source>
        <translation>未填写时，请求会发往 Nivora 云端。</translation>
    </message>
    <message>
        <source>地址要以 http:// 或 https:// 开头。</source>
        <translation>地址要以 http:// 或 https:// 开头。</translation>
    </message>
    <message>
        <source>地址里没有可用的主机名。</source>
        <translation>地址里没有可用的主机名。</translation>
    </message>
    <message>
        <source>地址已以 /v1 结尾，而请求会自己加上 v1，通常应去掉。</source>
        <translation>地址已以 /v1 结尾，而请求会自己加上 v1，通常应去掉。</translation>
    </message>
    <message>
        <source>翻译服务</source>
        <translation>翻译服务</translation>
    </message>
    <message>
        <source>把请求发往你自己的 OpenAI 兼容服务，登录态绝不外发。</source>
        <translation>把请求发往你自己的 OpenAI 兼容服务，登录态绝不外发。</translation>
    </message>
    <message>
        <source>实时翻译</source>
        <translation>实时翻译</translation>
    </message>
    <message>
        <source>开启后边输入边翻译；关闭则按 ⌘↩ 或「翻译」按钮手动触发，更省用量。</source>
        <translation>开启后边输入边翻译；关闭则按 Ctrl+↩ 或「翻译」按钮手动触发，更省用量。</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>请求超时</source>
        <translation>请求超时</translation>
    </message>
    <message>
        <source>Nivora 云端</source>
        <translation>Nivora 云端</translation>
    </message>
    <message>
        <source>自建后端（BYO）</source>
        <translation>自建后端（BYO）</translation>
    </message>
    <message>
        <source>后端</source>
        <translation>后端</translation>
    </message>
    <message>
        <source>由 Nivora 云端提供翻译，开箱即用。</source>
        <translation>由 Nivora 云端提供翻译，开箱即用。</translation>
    </message>
    <message>
        <source>测试连接</source>
        <translation>测试连接</translation>
    </message>
    <message>
        <source>API 地址</source>
        <translation>API 地址</translation>
    </message>
    <message>
        <source>模型名</source>
        <translation>模型名</translation>
    </message>
    <message>
        <source>API Key（可选）</source>
        <translation>API Key（可选）</translation>
    </message>
    <message>
        <source>正在测试…</source>
        <translation>正在测试…</translation>
    </message>
</context>
<context>
    <name>nivora::SettingsGeneralTab</name>
    <message>
        <source>快捷键</source>
        <translation>快捷键</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>双击 Shift 间隔</source>
        <translation>双击 Shift 间隔</translation>
    </message>
    <message>
        <source>外观</source>
        <translation>外观</translation>
    </message>
    <message>
        <source>跟随系统</source>
        <translation>跟随系统</translation>
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
        <translation>App 语言</translation>
    </message>
    <message>
        <source>更改语言后需重启生效</source>
        <translation>更改语言后需重启生效</translation>
    </message>
    <message>
        <source>立即重启</source>
        <translation>立即重启</translation>
    </message>
    <message>
        <source>主题</source>
        <translation>主题</translation>
    </message>
    <message>
        <source>浅色</source>
        <translation>浅色</translation>
    </message>
    <message>
        <source>深色</source>
        <translation>深色</translation>
    </message>
    <message>
        <source>行为</source>
        <translation>行为</translation>
    </message>
    <message>
        <source>失去焦点时关闭面板</source>
        <translation>失去焦点时关闭面板</translation>
    </message>
    <message>
        <source>翻译完成后自动复制</source>
        <translation>翻译完成后自动复制</translation>
    </message>
    <message>
        <source>保存翻译历史（仅本地）</source>
        <translation>保存翻译历史（仅本地）</translation>
    </message>
    <message>
        <source>开机自动启动</source>
        <translation>开机自动启动</translation>
    </message>
    <message>
        <source>朗读</source>
        <translation>朗读</translation>
    </message>
    <message>
        <source>翻译完成后自动朗读</source>
        <translation>翻译完成后自动朗读</translation>
    </message>
    <message>
        <source>试听</source>
        <translation>试听</translation>
    </message>
    <message>
        <source>语速</source>
        <translation>语速</translation>
    </message>
    <message>
        <source>日语语音</source>
        <translation>日语语音</translation>
    </message>
    <message>
        <source>更好的音质可在「系统设置 → 辅助功能 → 朗读内容」下载增强语音。</source>
        <translation>想要更好的音质，可为 Speech Dispatcher 安装更多语音。</translation>
    </message>
    <message>
        <source>自动（最佳）</source>
        <translation>自动（最佳）</translation>
    </message>
</context>
<context>
    <name>nivora::SettingsTranslationTab</name>
    <message>
        <source>自建后端提示模板</source>
        <translation>自建后端提示模板</translation>
    </message>
    <message>
        <source>可用变量：{{text}} {{target}} {{source}} {{style}} {{background}} {{glossary}}。仅 BYO（自建后端）时生效。</source>
        <translation>可用变量：{{text}} {{target}} {{source}} {{style}} {{background}} {{glossary}}。仅 BYO（自建后端）时生效。</translation>
    </message>
    <message>
        <source>恢复默认模板</source>
        <translation>恢复默认模板</translation>
    </message>
    <message>
        <source>语言</source>
        <translation>语言</translation>
    </message>
    <message>
        <source>我的语言</source>
        <translation>我的语言</translation>
    </message>
    <message>
        <source>我用母语书写时，译成</source>
        <translation>我用母语书写时，译成</translation>
    </message>
    <message>
        <source>外语自动译成「我的语言」；当源文本身已是我的语言时，译成上面选的语言。每次翻译都可在面板里临时改方向。</source>
        <translation>外语自动译成「我的语言」；当源文本身已是我的语言时，译成上面选的语言。每次翻译都可在面板里临时改方向。</translation>
    </message>
    <message>
        <source>日语增强</source>
        <translation>日语增强</translation>
    </message>
    <message>
        <source>读音显示</source>
        <translation>读音显示</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>罗马音</source>
        <translation>罗马音</translation>
    </message>
    <message>
        <source>平假名</source>
        <translation>平假名</translation>
    </message>
    <message>
        <source>书写日语风格</source>
        <translation>书写日语风格</translation>
    </message>
    <message>
        <source>默认</source>
        <translation>默认</translation>
    </message>
    <message>
        <source>礼貌</source>
        <translation>礼貌</translation>
    </message>
    <message>
        <source>商务敬语</source>
        <translation>商务敬语</translation>
    </message>
    <message>
        <source>写日语时显示中文回译（校验原意）</source>
        <translation>写日语时显示中文回译（校验原意）</translation>
    </message>
    <message>
        <source>仅在涉及日语时生效。</source>
        <translation>仅在涉及日语时生效。</translation>
    </message>
</context>
<context>
    <name>nivora::SettingsWindow</name>
    <message>
        <source>Nivora 设置</source>
        <translation>Nivora 设置</translation>
    </message>
    <message>
        <source>通用</source>
        <translation>通用</translation>
    </message>
    <message>
        <source>翻译</source>
        <translation>翻译</translation>
    </message>
    <message>
        <source>账户</source>
        <translation>账户</translation>
    </message>
</context>
<context>
    <name>nivora::SignInForm</name>
    <message>
        <source>用 Google 登录</source>
        <translation>用 Google 登录</translation>
    </message>
    <message>
        <source>邮箱</source>
        <translation>邮箱</translation>
    </message>
    <message>
        <source>6 位验证码</source>
        <translation>6 位验证码</translation>
    </message>
    <message>
        <source>返回</source>
        <translation>返回</translation>
    </message>
    <message>
        <source>请在浏览器中完成登录</source>
        <translation>请在浏览器中完成登录</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>或</source>
        <translation>或</translation>
    </message>
    <message>
        <source>发送中…</source>
        <translation>发送中…</translation>
    </message>
    <message>
        <source>发送验证码</source>
        <translation>发送验证码</translation>
    </message>
    <message>
        <source>验证码已发送到 %1，请查收邮箱。</source>
        <extracomment>OTP code sent to email</extracomment>
        <translation>验证码已发送到 %1，请查收邮箱。</translation>
    </message>
    <message>
        <source>登录中…</source>
        <translation>登录中…</translation>
    </message>
    <message>
        <source>登录</source>
        <translation>登录</translation>
    </message>
</context>
<context>
    <name>nivora::SignInPage</name>
    <message>
        <source>继续</source>
        <translation>继续</translation>
    </message>
    <message>
        <source>已登录</source>
        <translation>已登录</translation>
    </message>
    <message>
        <source>登录</source>
        <translation>登录</translation>
    </message>
    <message>
        <source>你的用量与订阅随账户保存。</source>
        <translation>你的用量与订阅随账户保存。</translation>
    </message>
</context>
<context>
    <name>nivora::SpeechInputService</name>
    <message>
        <source>需要麦克风和语音识别权限</source>
        <translation>需要麦克风和语音识别权限</translation>
    </message>
    <message>
        <source>当前语言的语音识别暂不可用</source>
        <translation>当前语言的语音识别暂不可用</translation>
    </message>
    <message>
        <source>没有找到麦克风</source>
        <translation>没有找到麦克风</translation>
    </message>
    <message>
        <source>无法打开麦克风</source>
        <translation>无法打开麦克风</translation>
    </message>
    <message>
        <source>麦克风已断开</source>
        <translation>麦克风已断开</translation>
    </message>
    <message>
        <source>语音识别模型无法读取</source>
        <translation>语音识别模型无法读取</translation>
    </message>
    <message>
        <source>语音识别出错</source>
        <translation>语音识别出错</translation>
    </message>
</context>
<context>
    <name>nivora::SubscriptionSettingsSection</name>
    <message>
        <source>订阅</source>
        <translation>订阅</translation>
    </message>
    <message>
        <source>用量统计</source>
        <translation>用量统计</translation>
    </message>
    <message>
        <source>刷新</source>
        <translation>刷新</translation>
    </message>
    <message>
        <source>加载中…</source>
        <translation>加载中…</translation>
    </message>
    <message>
        <source>暂无订阅信息</source>
        <translation>暂无订阅信息</translation>
    </message>
    <message>
        <source>本期于 %1 重置</source>
        <comment>billing period reset date</comment>
        <translation>本期于 %1 重置</translation>
    </message>
    <message>
        <source>管理订阅</source>
        <translation>管理订阅</translation>
    </message>
    <message>
        <source>升级到 Pro</source>
        <translation>升级到 Pro</translation>
    </message>
</context>
<context>
    <name>nivora::UpdateWindow</name>
    <message>
        <source>软件更新</source>
        <translation>软件更新</translation>
    </message>
    <message>
        <source>版本历史</source>
        <translation>版本历史</translation>
    </message>
    <message>
        <source>跳过此版本</source>
        <translation>跳过此版本</translation>
    </message>
    <message>
        <source>以后提醒</source>
        <translation>以后提醒</translation>
    </message>
    <message>
        <source>打开下载页</source>
        <translation>打开下载页</translation>
    </message>
    <message>
        <source>重试</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>好</source>
        <translation>好</translation>
    </message>
    <message>
        <source>正在检查更新…</source>
        <translation>正在检查更新…</translation>
    </message>
    <message>
        <source>有新版本：Nivora %1</source>
        <translation>有新版本：Nivora %1</translation>
    </message>
    <message>
        <source>已是最新版本</source>
        <translation>已是最新版本</translation>
    </message>
    <message>
        <source>无法检查更新</source>
        <translation>无法检查更新</translation>
    </message>
    <message>
        <source>没有找到浏览器</source>
        <translation>没有找到浏览器</translation>
    </message>
    <message>
        <source>你正在使用 %1。</source>
        <translation>你正在使用 %1。</translation>
    </message>
    <message>
        <source>没有比 Nivora %1 更新的版本。</source>
        <translation>没有比 Nivora %1 更新的版本。</translation>
    </message>
    <message>
        <source>新版本在 %1</source>
        <translation>新版本在 %1</translation>
    </message>
    <message>
        <source>软件包 %1 附有签名，安装前请核对。</source>
        <translation>软件包 %1 附有签名，安装前请核对。</translation>
    </message>
    <message>
        <source>软件包 %1 没有签名。</source>
        <translation>软件包 %1 没有签名。</translation>
    </message>
</context>
<context>
    <name>nivora::Updater</name>
    <message>
        <source>更新服务器没有给出版本列表</source>
        <translation>更新服务器没有给出版本列表</translation>
    </message>
</context>
<context>
    <name>nivora::UsageSettingsSection</name>
    <message>
        <source>用量统计</source>
        <translation>用量统计</translation>
    </message>
    <message>
        <source>翻译请求</source>
        <translation>翻译请求</translation>
    </message>
    <message>
        <source>输入 tokens</source>
        <translation>输入 tokens</translation>
    </message>
    <message>
        <source>输出 tokens</source>
        <translation>输出 tokens</translation>
    </message>
    <message>
        <source>合计 tokens</source>
        <translation>合计 tokens</translation>
    </message>
    <message>
        <source>重置</source>
        <translation>重置</translation>
    </message>
    <message>
        <source>%1 次</source>
        <comment>request count value</comment>
        <translation>%1 次</translation>
    </message>
    <message>
        <source>自 %1 起统计</source>
        <comment>tracking since date</comment>
        <translation>自 %1 起统计</translation>
    </message>
</context>
<context>
    <name>nivora::VersionHistoryView</name>
    <message>
        <source>无法加载版本历史</source>
        <translation>无法加载版本历史</translation>
    </message>
    <message>
        <source>选择左侧版本查看更新说明</source>
        <translation>选择左侧版本查看更新说明</translation>
    </message>
    <message>
        <source>版本</source>
        <translation>版本</translation>
    </message>
</context>
<context>
    <name>nivora::VersionHistoryWindowController</name>
    <message>
        <source>版本历史</source>
        <comment>version history window title</comment>
        <translation>版本历史</translation>
    </message>
</context>
<context>
    <name>nivora::VoiceInput</name>
    <message>
        <source>没有找到系统设置程序</source>
        <translation>没有找到系统设置程序</translation>
    </message>
</context>
<context>
    <name>nivora::WelcomePage</name>
    <message>
        <source>选中任意文字，**双击 Shift**，立即翻译。读懂、写出、回填，一气呵成。</source>
        <extracomment>Markdown</extracomment>
        <translation>选中任意文字，**双击 Shift**，立即翻译。读懂、写出、回填，一气呵成。</translation>
    </message>
    <message>
        <source>开始</source>
        <translation>开始</translation>
    </message>
    <message>
        <source>欢迎使用 Nivora</source>
        <translation>欢迎使用 Nivora</translation>
    </message>
    <message>
        <source>现在就试试：双击 Shift 即可继续</source>
        <translation>现在就试试：双击 Shift 即可继续</translation>
    </message>
</context>
</TS>
