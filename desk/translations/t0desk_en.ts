<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>Banner</name>
    <message>
        <source>%1 · 自 %2 起，已 %3 秒 · 正在重新连接</source>
        <translation>%1 · since %2, for %3 s · reconnecting</translation>
    </message>
</context>
<context>
    <name>CommandList</name>
    <message>
        <source>没有这个命令：%1</source>
        <translation>There is no such command: %1</translation>
    </message>
    <message>
        <source>%1 已用于“%2”</source>
        <translation>%1 is already used by &quot;%2&quot;</translation>
    </message>
    <message>
        <source>%1 留给输入和移动</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ConnectionWatch</name>
    <message>
        <source>与网关的连接已断开，下单已停用</source>
        <translation>The connection to the gateway is lost; orders are off</translation>
    </message>
</context>
<context>
    <name>Desk</name>
    <message>
        <source>内嵌网关</source>
        <translation>embedded gateway</translation>
    </message>
    <message>
        <source>网关 %1</source>
        <translation>gateway %1</translation>
    </message>
    <message>
        <source>账簿中没有管理员，请用 --user 指定登录用户</source>
        <translation>The books have no manager; say who logs in with --user</translation>
    </message>
    <message>
        <source>网关 %1 没有应答</source>
        <translation>Gateway %1 does not answer</translation>
    </message>
    <message>
        <source>%1 登录失败：%2</source>
        <translation>%1 is not logged in: %2</translation>
    </message>
    <message>
        <source>%1 中没有插件</source>
        <translation>There is no plug-in in %1</translation>
    </message>
</context>
<context>
    <name>KeysDialog</name>
    <message>
        <source>快捷键</source>
        <translation>Keys</translation>
    </message>
    <message>
        <source>搜索命令或按键</source>
        <translation>Search commands or keys</translation>
    </message>
    <message>
        <source>命令</source>
        <translation>Command</translation>
    </message>
    <message>
        <source>按键</source>
        <translation>Key</translation>
    </message>
    <message>
        <source>默认</source>
        <translation>Default</translation>
    </message>
    <message>
        <source>清除</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>新按键</source>
        <translation>New key</translation>
    </message>
    <message>
        <source>全部还原默认</source>
        <translation>Restore all defaults</translation>
    </message>
    <message>
        <source>请先选择一个命令</source>
        <translation>Choose a command first</translation>
    </message>
    <message>
        <source>应用</source>
        <translation>Set</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>管理员</source>
        <translation>Manager</translation>
    </message>
    <message>
        <source>交易员</source>
        <translation>Trader</translation>
    </message>
    <message>
        <source>页面：%1</source>
        <translation>Page: %1</translation>
    </message>
    <message>
        <source>刷新</source>
        <translation>Refresh</translation>
    </message>
    <message>
        <source>搜索</source>
        <translation>Search</translation>
    </message>
    <message>
        <source>导出</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>放大字号</source>
        <translation>Larger text</translation>
    </message>
    <message>
        <source>缩小字号</source>
        <translation>Smaller text</translation>
    </message>
    <message>
        <source>深色或浅色</source>
        <translation>Dark or light</translation>
    </message>
    <message>
        <source>还原默认布局</source>
        <translation>Restore default layout</translation>
    </message>
    <message>
        <source>快捷键</source>
        <translation>Keys</translation>
    </message>
    <message>
        <source>设置</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>退出</source>
        <translation>Quit</translation>
    </message>
    <message>
        <source>、</source>
        <translation>, </translation>
    </message>
    <message>
        <source>菜单</source>
        <translation>Menu</translation>
    </message>
</context>
<context>
    <name>ManagerPage</name>
    <message>
        <source>管理</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PreferencesDialog</name>
    <message>
        <source>设置</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>深色</source>
        <translation>Dark</translation>
    </message>
    <message>
        <source>红涨绿跌</source>
        <translation>Red up, green down</translation>
    </message>
    <message>
        <source>显示成交和失效的提示</source>
        <translation>Show notes of fills and expiries</translation>
    </message>
    <message>
        <source>提示时发声</source>
        <translation>With a sound</translation>
    </message>
    <message>
        <source>字号</source>
        <translation>Text size</translation>
    </message>
</context>
<context>
    <name>ProfitPage</name>
    <message>
        <source>盈亏</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RecordTable</name>
    <message>
        <source>查找</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>导出</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>CSV 文件 (*.csv)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>已导出到 %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>导出失败：%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>复制</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>导出…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>列</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SharedColumns</name>
    <message>
        <source>资金账号</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>代码</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>名称</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>市场</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>交易员</source>
        <translation>Trader</translation>
    </message>
</context>
<context>
    <name>StatusLine</name>
    <message>
        <source>● 已断开</source>
        <translation>● Disconnected</translation>
    </message>
    <message>
        <source>● 已连接</source>
        <translation>● Connected</translation>
    </message>
    <message>
        <source>● 已连接 %1 毫秒</source>
        <translation>● Connected %1 ms</translation>
    </message>
    <message>
        <source>沪</source>
        <translation>SH</translation>
    </message>
    <message>
        <source>深</source>
        <translation>SZ</translation>
    </message>
    <message>
        <source>北</source>
        <translation>BJ</translation>
    </message>
    <message>
        <source>沪港通</source>
        <translation>HK via SH</translation>
    </message>
    <message>
        <source>深港通</source>
        <translation>HK via SZ</translation>
    </message>
    <message>
        <source>开盘竞价</source>
        <translation>opening auction</translation>
    </message>
    <message>
        <source>连续竞价</source>
        <translation>continuous</translation>
    </message>
    <message>
        <source>收盘竞价</source>
        <translation>closing auction</translation>
    </message>
    <message>
        <source>休市</source>
        <translation>closed</translation>
    </message>
    <message>
        <source>市场 %1（暂停） %2</source>
        <translation>Market %1 (held) %2</translation>
    </message>
    <message>
        <source>市场 %1 %2</source>
        <translation>Market %1 %2</translation>
    </message>
</context>
<context>
    <name>StatusPage</name>
    <message>
        <source>状态</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TradeNotices</name>
    <message>
        <source>成交 %1 买入 %2 @ %3</source>
        <translation>Filled %1 bought %2 @ %3</translation>
    </message>
    <message>
        <source>成交 %1 卖出 %2 @ %3</source>
        <translation>Filled %1 sold %2 @ %3</translation>
    </message>
    <message>
        <source>另有 %1 笔成交</source>
        <translation>and %1 more fills</translation>
    </message>
    <message>
        <source>委托 %1 %2 已失效</source>
        <translation>Order %1 %2 has expired</translation>
    </message>
    <message>
        <source>另有 %1 笔委托失效</source>
        <translation>and %1 more expired orders</translation>
    </message>
    <message>
        <source>另有 %1 条消息</source>
        <translation>and %1 more messages</translation>
    </message>
    <message>
        <source>新的交易日 %1：此前未了结的委托已失效</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TraderPage</name>
    <message>
        <source>交易</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
