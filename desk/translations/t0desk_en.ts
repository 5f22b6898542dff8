<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>AccountList</name>
    <message>
        <source>交易账户</source>
        <translation>Trading accounts</translation>
    </message>
    <message>
        <source>优先级 %1</source>
        <translation>Priority %1</translation>
    </message>
</context>
<context>
    <name>AddPoolBar</name>
    <message>
        <source>加入(&amp;J)</source>
        <translation>Add p&amp;ool</translation>
    </message>
</context>
<context>
    <name>AddResourcesDialog</name>
    <message>
        <source>第%1行 %2：%3</source>
        <translation>Row %1, %2: %3</translation>
    </message>
    <message>
        <source>……另有%1处，见表</source>
        <translation>… and %1 more, see the table</translation>
    </message>
    <message>
        <source>含未持有的可转债</source>
        <translation>With convertible bonds not held</translation>
    </message>
    <message>
        <source>追加数量(&amp;A)</source>
        <translation>&amp;Add to quantity</translation>
    </message>
    <message>
        <source>覆盖数量(&amp;C)</source>
        <translation>Repla&amp;ce quantity</translation>
    </message>
    <message>
        <source>提交(&amp;S)</source>
        <translation>&amp;Submit</translation>
    </message>
    <message>
        <source>新增资源</source>
        <translation>Add resources</translation>
    </message>
    <message>
        <source>候选持仓</source>
        <translation>Candidates</translation>
    </message>
    <message>
        <source>粘贴</source>
        <translation>Paste</translation>
    </message>
    <message>
        <source>CSV文件</source>
        <translation>CSV file</translation>
    </message>
    <message>
        <source>列出持仓(&amp;L)</source>
        <translation>&amp;List positions</translation>
    </message>
    <message>
        <source>从表格复制后粘贴：资金账号、代码、数量，可再加交易员、券池数量；首行有标题时列的顺序不限（资金账号 代码 市场 数量 交易员 券池数量）</source>
        <translation>Paste from a spreadsheet: account, code, quantity; optionally trader and pool quantity. With titles in the first row the columns may stand in any order (Account, Code, Market, Qty, Trader, Pool qty)</translation>
    </message>
    <message>
        <source>有标题行的CSV文件，UTF-8或GB18030</source>
        <translation>CSV file with a title row, UTF-8 or GB18030</translation>
    </message>
    <message>
        <source>浏览(&amp;B)…</source>
        <translation>&amp;Browse…</translation>
    </message>
    <message>
        <source>读取(&amp;R)</source>
        <translation>&amp;Read</translation>
    </message>
    <message>
        <source>全选</source>
        <translation>Select all</translation>
    </message>
    <message>
        <source>已有的资源增加这些数量</source>
        <translation>Existing resources grow by these quantities</translation>
    </message>
    <message>
        <source>已有的资源改为这些数量；有交易员的行还会替换该资源的全部券池</source>
        <translation>Existing resources get these quantities; rows with a trader also replace all pools of the resource</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>CSV 文件 (*.csv *.txt);;所有文件 (*)</source>
        <translation>CSV files (*.csv *.txt);;All files (*)</translation>
    </message>
    <message>
        <source>无法读取文件：%1</source>
        <translation>The file cannot be read: %1</translation>
    </message>
    <message>
        <source>提交中…</source>
        <translation>Submitting…</translation>
    </message>
    <message>
        <source>没有数据</source>
        <translation>No data</translation>
    </message>
    <message>
        <source>没有勾选的行</source>
        <translation>No rows are ticked</translation>
    </message>
    <message>
        <source>%1 行有问题：改正，或去掉勾选</source>
        <translation>Rows with problems: %1. Correct or untick them</translation>
    </message>
    <message>
        <source>已新增 %1 行资源</source>
        <translation>Resource rows added: %1</translation>
    </message>
    <message>
        <source>新增资源：%1 行成功，%2 行未成功</source>
        <translation>Resource rows added: %1, not added: %2</translation>
    </message>
    <message>
        <source>将提交 %1 行</source>
        <translation>Rows to submit: %1</translation>
    </message>
</context>
<context>
    <name>AllocationBar</name>
    <message>
        <source>公共 %1</source>
        <translation>Public %1</translation>
    </message>
    <message>
        <source>私有 %1</source>
        <translation>Private %1</translation>
    </message>
    <message>
        <source>未分配 %1</source>
        <translation>Free %1</translation>
    </message>
    <message>
        <source>超配 %1</source>
        <translation>Over by %1</translation>
    </message>
</context>
<context>
    <name>AllocationEditor</name>
    <message>
        <source>无</source>
        <translation>none</translation>
    </message>
    <message>
        <source>删除行</source>
        <translation>Delete row</translation>
    </message>
    <message>
        <source>还原</source>
        <translation>Revert</translation>
    </message>
    <message>
        <source>应用(&amp;Y)</source>
        <translation>Appl&amp;y</translation>
    </message>
    <message>
        <source>选中的行还原为服务器的数值；未选中时全部还原</source>
        <translation>Selected rows get the server&apos;s values back; with none selected, all rows</translation>
    </message>
    <message>
        <source>资源数量</source>
        <translation>Resource qty</translation>
    </message>
    <message>
        <source>%1 上限已改</source>
        <translation>%1: limits changed</translation>
    </message>
    <message>
        <source>%1 %2 → %3</source>
        <translation>%1 %2 → %3</translation>
    </message>
    <message>
        <source>%1 服务器上的券池有变化：%2</source>
        <translation>%1 Pools changed on the server: %2</translation>
    </message>
    <message>
        <source>；</source>
        <translation>; </translation>
    </message>
    <message>
        <source>应用中…</source>
        <translation>Applying…</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>，</source>
        <translation>, </translation>
    </message>
    <message>
        <source>选择一个资源以分配券池</source>
        <translation>Select a resource to allocate its pools</translation>
    </message>
    <message>
        <source>资源已不存在：%1</source>
        <translation>The resource is gone: %1</translation>
    </message>
    <message>
        <source>%1 %2 资源数量 %3</source>
        <translation>%1 %2 resource quantity %3</translation>
    </message>
    <message>
        <source>没有资源</source>
        <translation>there is no resource</translation>
    </message>
    <message>
        <source>超配 %1</source>
        <translation>Over by %1</translation>
    </message>
    <message>
        <source>没有修改</source>
        <translation>nothing is changed</translation>
    </message>
    <message>
        <source>标红的行不是最小单位的整数倍</source>
        <translation>the red rows are not multiples of the smallest unit</translation>
    </message>
    <message>
        <source>，不能应用：%1</source>
        <translation>, cannot be applied: %1</translation>
    </message>
    <message>
        <source>，未应用的还有：%1</source>
        <translation>, not yet applied: %1</translation>
    </message>
    <message>
        <source>公共 %1 · 私有 %2 · 未分配 %3</source>
        <translation>Public %1 · private %2 · free %3</translation>
    </message>
</context>
<context>
    <name>AllocationRun</name>
    <message>
        <source>%1；没有读到新的状态，请刷新后核对</source>
        <translation>%1; the new state could not be read, refresh and check</translation>
    </message>
    <message>
        <source>没有发送：%1</source>
        <translation>Not sent: %1</translation>
    </message>
    <message>
        <source>没有发送：券池已被他人修改，请核对后再应用</source>
        <translation>Not sent: someone else changed the pools, check before you apply again</translation>
    </message>
    <message>
        <source>%1；券池又被他人修改，请核对后再应用</source>
        <translation>%1; someone else changed the pools again, check before you apply</translation>
    </message>
    <message>
        <source>%1：结果未知，请核对</source>
        <translation>%1: result unknown, please check</translation>
    </message>
    <message>
        <source>%1未应用：%2</source>
        <translation>%1 not applied: %2</translation>
    </message>
    <message>
        <source>；</source>
        <translation>; </translation>
    </message>
    <message>
        <source>公共券池</source>
        <translation>Public pool</translation>
    </message>
    <message>
        <source>敞口上限</source>
        <translation>Max exposure</translation>
    </message>
    <message>
        <source>私有券池</source>
        <translation>Private pools</translation>
    </message>
    <message>
        <source>已应用：%1</source>
        <translation>Applied: %1</translation>
    </message>
    <message>
        <source>、</source>
        <translation>, </translation>
    </message>
</context>
<context>
    <name>Banner</name>
    <message>
        <source>%1 · 自 %2 起，已 %3 秒 · 正在重新连接</source>
        <translation>%1 · since %2, for %3 s · reconnecting</translation>
    </message>
    <message>
        <source>已重新连接，正在同步断线期间的数据，下单暂停</source>
        <translation>Connected again, fetching what was missed; orders are paused</translation>
    </message>
</context>
<context>
    <name>ChangeOutcome</name>
    <message>
        <source>成功</source>
        <translation>Done</translation>
    </message>
    <message>
        <source>结果未知</source>
        <translation>Result unknown</translation>
    </message>
    <message>
        <source>失败</source>
        <translation>Failed</translation>
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
        <translation>%1 is kept for typing and moving</translation>
    </message>
</context>
<context>
    <name>ConfirmChange</name>
    <message>
        <source>确认</source>
        <translation>Confirm</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>ConfirmDialog</name>
    <message>
        <source>%1 %2 %3</source>
        <translation>%1 %2 %3</translation>
    </message>
    <message>
        <source>合计 %1 笔&#x3000;数量 %2&#x3000;金额 %3</source>
        <translation>Orders: %1   Quantity: %2   Amount: %3</translation>
    </message>
    <message>
        <source>序号</source>
        <translation>No.</translation>
    </message>
    <message>
        <source>金额</source>
        <translation>Amount</translation>
    </message>
    <message>
        <source>未能下单 %1：%2</source>
        <translation>Not ordered %1: %2</translation>
    </message>
    <message>
        <source>%1(&amp;S)</source>
        <translation>&amp;Send: %1</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>ConnectionPanel</name>
    <message>
        <source>连接</source>
        <translation>Connection</translation>
    </message>
    <message>
        <source>状态</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>自</source>
        <translation>Since</translation>
    </message>
    <message>
        <source>延迟</source>
        <translation>Latency</translation>
    </message>
    <message>
        <source>行情时间</source>
        <translation>Market time</translation>
    </message>
    <message>
        <source>数据</source>
        <translation>Data</translation>
    </message>
    <message>
        <source>支持的市场</source>
        <translation>Markets</translation>
    </message>
    <message>
        <source>可交易品种</source>
        <translation>Tradable kinds</translation>
    </message>
    <message>
        <source>可转债</source>
        <translation>Convertible bonds</translation>
    </message>
    <message>
        <source>可启用产品属性</source>
        <translation>T0 candidates</translation>
    </message>
    <message>
        <source>本人标的</source>
        <translation>Own securities</translation>
    </message>
    <message>
        <source>有行情的用量</source>
        <translation>Usage with price</translation>
    </message>
    <message>
        <source>已连接</source>
        <translation>Connected</translation>
    </message>
    <message>
        <source>已断开，下单已停用</source>
        <translation>Disconnected, orders are off</translation>
    </message>
    <message>
        <source>最近 %1 毫秒，最近 %2 次中位 %3、最差 %4</source>
        <translation>Last %1 ms; of the last %2: median %3, worst %4</translation>
    </message>
    <message>
        <source>（暂停）</source>
        <translation> (held)</translation>
    </message>
    <message>
        <source>、</source>
        <translation>, </translation>
    </message>
    <message>
        <source>%1 类</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>%1 只</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>%1，已启用 %2</source>
        <translation>%1, enabled %2</translation>
    </message>
    <message>
        <source>%1 / %2 行</source>
        <translation>%1 of %2 rows</translation>
    </message>
    <message>
        <source>同步</source>
        <translation>In step</translation>
    </message>
    <message>
        <source>自 %1 起同步，最近收到 %2</source>
        <translation>Since %1, last heard %2</translation>
    </message>
    <message>
        <source>未同步，下单暂停，最近收到 %1</source>
        <translation>Not in step, orders are paused, last heard %1</translation>
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
    <name>DayProfitChart</name>
    <message>
        <source>当日总盈亏</source>
        <translation>Total P/L of the day</translation>
    </message>
    <message>
        <source>当日总盈亏 %1（%2）</source>
        <translation>Total P/L of the day %1 (%2)</translation>
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
    <name>DetailsDialog</name>
    <message>
        <source>明细：%1 %2 %3</source>
        <translation>Details: %1 %2 %3</translation>
    </message>
    <message>
        <source>项目</source>
        <translation>Item</translation>
    </message>
    <message>
        <source>值</source>
        <translation>Value</translation>
    </message>
    <message>
        <source>是</source>
        <translation>yes</translation>
    </message>
    <message>
        <source>否</source>
        <translation>no</translation>
    </message>
    <message>
        <source>产品</source>
        <translation>Product</translation>
    </message>
    <message>
        <source>已启用属性</source>
        <translation>Enabled properties</translation>
    </message>
    <message>
        <source>本账户属性已启用</source>
        <translation>This account enabled</translation>
    </message>
    <message>
        <source>同属性的账户</source>
        <translation>Accounts alike</translation>
    </message>
    <message>
        <source>产品还可设为资源</source>
        <translation>Still to be set aside</translation>
    </message>
    <message>
        <source>账户已勾选交易</source>
        <translation>Account ticked for trading</translation>
    </message>
    <message>
        <source>本人可交易该证券</source>
        <translation>Tradable for me</translation>
    </message>
    <message>
        <source>用量</source>
        <translation>Usage</translation>
    </message>
    <message>
        <source>券池 %1</source>
        <translation>Pool %1</translation>
    </message>
    <message>
        <source>资源 %1</source>
        <translation>Resource %1</translation>
    </message>
    <message>
        <source>明细</source>
        <translation>Details</translation>
    </message>
</context>
<context>
    <name>ExposureChart</name>
    <message>
        <source>敞口与限额（竖线为限额，浅色不受限）</source>
        <translation>Exposure and limit (line: limit; pale: no limit)</translation>
    </message>
</context>
<context>
    <name>FamilyPanel</name>
    <message>
        <source>数据</source>
        <translation>Data</translation>
    </message>
    <message>
        <source>状态</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>行数</source>
        <translation>Rows</translation>
    </message>
    <message>
        <source>完成时间</source>
        <translation>Finished</translation>
    </message>
    <message>
        <source>耗时(毫秒)</source>
        <translation>Took (ms)</translation>
    </message>
    <message>
        <source>刷新%1</source>
        <translation>Refresh %1</translation>
    </message>
    <message>
        <source>全部刷新（%1 秒后）</source>
        <translation>Refresh all (in %1 s)</translation>
    </message>
    <message>
        <source>全部刷新</source>
        <translation>Refresh all</translation>
    </message>
</context>
<context>
    <name>FamilyWatch</name>
    <message>
        <source>产品</source>
        <translation>Products</translation>
    </message>
    <message>
        <source>交易员</source>
        <translation>Traders</translation>
    </message>
    <message>
        <source>资源</source>
        <translation>Resources</translation>
    </message>
    <message>
        <source>券池</source>
        <translation>Pools</translation>
    </message>
    <message>
        <source>用量</source>
        <translation>Usage</translation>
    </message>
    <message>
        <source>优先级</source>
        <translation>Priority</translation>
    </message>
    <message>
        <source>断线，可能过时</source>
        <translation>disconnected, may be old</translation>
    </message>
    <message>
        <source>未开始</source>
        <translation>not started</translation>
    </message>
    <message>
        <source>加载中 %1/%2</source>
        <translation>loading %1/%2</translation>
    </message>
    <message>
        <source>加载中 %1 行</source>
        <translation>loading, %1 rows</translation>
    </message>
    <message>
        <source>就绪</source>
        <translation>ready</translation>
    </message>
    <message>
        <source>部分失败</source>
        <translation>partly failed</translation>
    </message>
    <message>
        <source>失败</source>
        <translation>Failed</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>加载于 %1</source>
        <translation>loaded at %1</translation>
    </message>
    <message>
        <source>%1 断线</source>
        <translation>disconnected at %1</translation>
    </message>
</context>
<context>
    <name>FillsView</name>
    <message>
        <source>成交</source>
        <translation>Fills</translation>
    </message>
</context>
<context>
    <name>FilterBar</name>
    <message>
        <source>代码或名称</source>
        <translation>Code or name</translation>
    </message>
    <message>
        <source>全部产品</source>
        <translation>All products</translation>
    </message>
    <message>
        <source>全部属性</source>
        <translation>All types</translation>
    </message>
</context>
<context>
    <name>HostDirectory</name>
    <message>
        <source>账号不存在</source>
        <translation>the account does not exist</translation>
    </message>
    <message>
        <source>账号未选为T0产品</source>
        <translation>the account is not chosen as a T0 product</translation>
    </message>
</context>
<context>
    <name>ImportModel</name>
    <message>
        <source>数量：%1</source>
        <translation>Qty: %1</translation>
    </message>
    <message>
        <source>结果未知：核对已有资源后再勾选</source>
        <translation>Result unknown: check the existing resources before you tick it again</translation>
    </message>
    <message>
        <source>；</source>
        <translation>; </translation>
    </message>
    <message>
        <source>超过可设数量，仅提示</source>
        <translation>More than can be set (a warning only)</translation>
    </message>
    <message>
        <source>行</source>
        <translation>Row</translation>
    </message>
    <message>
        <source>资金账号</source>
        <translation>Account</translation>
    </message>
    <message>
        <source>代码</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>市场</source>
        <translation>Market</translation>
    </message>
    <message>
        <source>名称</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>数量</source>
        <translation>Qty</translation>
    </message>
    <message>
        <source>已有资源</source>
        <translation>Existing</translation>
    </message>
    <message>
        <source>可设数量</source>
        <translation>Can be set</translation>
    </message>
    <message>
        <source>交易员</source>
        <translation>Trader</translation>
    </message>
    <message>
        <source>问题或结果</source>
        <translation>Problem or result</translation>
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
        <translation>Close</translation>
    </message>
</context>
<context>
    <name>LevelsTable</name>
    <message>
        <source>档位</source>
        <translation>Level</translation>
    </message>
    <message>
        <source>价格</source>
        <translation>Price</translation>
    </message>
    <message>
        <source>数量</source>
        <translation>Qty</translation>
    </message>
    <message>
        <source>卖%1</source>
        <translation>Ask %1</translation>
    </message>
    <message>
        <source>买%1</source>
        <translation>Bid %1</translation>
    </message>
</context>
<context>
    <name>LogPanel</name>
    <message>
        <source>时间</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>级别</source>
        <translation>Level</translation>
    </message>
    <message>
        <source>来源</source>
        <translation>Source</translation>
    </message>
    <message>
        <source>内容</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>调试</source>
        <translation>Debug</translation>
    </message>
    <message>
        <source>信息</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>信息与调试</source>
        <translation>Info and debug</translation>
    </message>
    <message>
        <source>只看含此文字的行</source>
        <translation>Only lines with this text</translation>
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
        <translation>Manage</translation>
    </message>
    <message>
        <source>资源与分配</source>
        <translation>Resources and allocation</translation>
    </message>
    <message>
        <source>产品</source>
        <translation>Products</translation>
    </message>
    <message>
        <source>券池</source>
        <translation>Pools</translation>
    </message>
    <message>
        <source>交易员</source>
        <translation>Traders</translation>
    </message>
    <message>
        <source>管理：%1</source>
        <translation>Manage: %1</translation>
    </message>
</context>
<context>
    <name>ManagerTexts</name>
    <message>
        <source>公共券池</source>
        <translation>Public pool</translation>
    </message>
    <message>
        <source>普通</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>信用</source>
        <translation>Credit</translation>
    </message>
</context>
<context>
    <name>MessageModel</name>
    <message>
        <source>时间</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>消息</source>
        <translation>Message</translation>
    </message>
</context>
<context>
    <name>OrderPanel</name>
    <message>
        <source>买入</source>
        <translation>Buy</translation>
    </message>
    <message>
        <source>卖出</source>
        <translation>Sell</translation>
    </message>
    <message>
        <source>买入下单</source>
        <translation>Send buy</translation>
    </message>
    <message>
        <source>卖出下单</source>
        <translation>Send sell</translation>
    </message>
    <message>
        <source>普通</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>担保品</source>
        <translation>Collateral</translation>
    </message>
    <message>
        <source>点击后恢复为全部勾选账户</source>
        <translation>Click to use all ticked accounts again</translation>
    </message>
    <message>
        <source>价格</source>
        <translation>Price</translation>
    </message>
    <message>
        <source>数量</source>
        <translation>Qty</translation>
    </message>
    <message>
        <source>1/3</source>
        <translation>1/3</translation>
    </message>
    <message>
        <source>1/2</source>
        <translation>1/2</translation>
    </message>
    <message>
        <source>全部</source>
        <translation>All</translation>
    </message>
    <message>
        <source>1手</source>
        <translation>1 lot</translation>
    </message>
    <message>
        <source>10手</source>
        <translation>10 lots</translation>
    </message>
    <message>
        <source>平仓</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>仅 %1 ✕</source>
        <translation>Only %1 ✕</translation>
    </message>
    <message>
        <source>可用 %1&#x3000;可平 %2</source>
        <translation>Quota %1   Closable %2</translation>
    </message>
    <message>
        <source>不限</source>
        <translation>no limit</translation>
    </message>
    <message>
        <source>敞口 %1 / %2</source>
        <translation>Exposure %1 / %2</translation>
    </message>
    <message>
        <source>上一笔委托发送中</source>
        <translation>The previous order is being sent</translation>
    </message>
    <message>
        <source>发送中</source>
        <translation>Sending</translation>
    </message>
</context>
<context>
    <name>OrderPlan</name>
    <message>
        <source>没有可下单的数量</source>
        <translation>There is no quantity to order</translation>
    </message>
    <message>
        <source>账户 %1 成交后敞口 %2 超过上限 %3</source>
        <translation>Account %1: %2 open once filled, the limit is %3</translation>
    </message>
</context>
<context>
    <name>OrderSender</name>
    <message>
        <source>未提交：账户不在您的账户优先级列表中</source>
        <translation>Not sent: the account is not in your account priority list</translation>
    </message>
    <message>
        <source>未提交：等待超过3秒</source>
        <translation>Not sent: waited for more than 3 seconds</translation>
    </message>
    <message>
        <source>未提交：等待期间连接已断开</source>
        <translation>Not sent: the connection was lost meanwhile</translation>
    </message>
</context>
<context>
    <name>OrderWarnings</name>
    <message>
        <source>没有最新价，无法判断委托价是否偏离</source>
        <translation>There is no last price to compare the order&apos;s price with</translation>
    </message>
    <message>
        <source>委托价偏离最新价 %1</source>
        <translation>Price is %1 off the last price</translation>
    </message>
    <message>
        <source>委托价高于涨停价</source>
        <translation>Price is above the upper limit</translation>
    </message>
    <message>
        <source>委托价等于涨停价</source>
        <translation>Price is at the upper limit</translation>
    </message>
    <message>
        <source>委托价低于跌停价</source>
        <translation>Price is below the lower limit</translation>
    </message>
    <message>
        <source>委托价等于跌停价</source>
        <translation>Price is at the lower limit</translation>
    </message>
    <message>
        <source>可能与自己的委托 %1（价格 %2）自成交</source>
        <translation>May trade with your own order %1 (price %2)</translation>
    </message>
</context>
<context>
    <name>OrdersView</name>
    <message>
        <source>仅可撤</source>
        <translation>Cancelable only</translation>
    </message>
    <message>
        <source>委托</source>
        <translation>Orders</translation>
    </message>
    <message>
        <source>撤选中</source>
        <translation>Cancel chosen</translation>
    </message>
    <message>
        <source>撤买单</source>
        <translation>Cancel buys</translation>
    </message>
    <message>
        <source>撤卖单</source>
        <translation>Cancel sells</translation>
    </message>
    <message>
        <source>全撤</source>
        <translation>Cancel all</translation>
    </message>
    <message>
        <source>撤最后一笔</source>
        <translation>Cancel last</translation>
    </message>
    <message>
        <source>没有可撤的委托</source>
        <translation>There is no order to cancel</translation>
    </message>
    <message>
        <source>撤单结果未知</source>
        <translation>Cancel: result unknown</translation>
    </message>
    <message>
        <source>撤单失败：%1</source>
        <translation>Cancel failed: %1</translation>
    </message>
    <message>
        <source>撤单已受理</source>
        <translation>Cancel accepted</translation>
    </message>
    <message>
        <source>撤单已受理 %1 笔</source>
        <translation>Cancels accepted: %1</translation>
    </message>
    <message>
        <source>撤单失败 %1 笔</source>
        <translation>Cancels failed: %1</translation>
    </message>
    <message>
        <source>撤单结果未知 %1 笔，请查看委托状态</source>
        <translation>Cancels with unknown result: %1, look at the orders&apos; status</translation>
    </message>
    <message>
        <source>；</source>
        <translation>; </translation>
    </message>
</context>
<context>
    <name>PagesPlugin</name>
    <message>
        <source>%1：没有可放置页面的窗口</source>
        <translation>%1: there is no window to place pages in</translation>
    </message>
</context>
<context>
    <name>PoolEditModel</name>
    <message>
        <source>不限</source>
        <translation>no limit</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>新增 %1</source>
        <translation>New %1</translation>
    </message>
    <message>
        <source>%1 上限</source>
        <translation>%1 limits</translation>
    </message>
    <message>
        <source>%1（他人已改）</source>
        <translation>%1 (changed by others)</translation>
    </message>
    <message>
        <source>无</source>
        <translation>none</translation>
    </message>
    <message>
        <source>数量和上限须为最小单位的整数倍</source>
        <translation>Quantity and limits must be multiples of the smallest unit</translation>
    </message>
    <message>
        <source>交易员</source>
        <translation>Trader</translation>
    </message>
    <message>
        <source>券池数量</source>
        <translation>Pool qty</translation>
    </message>
    <message>
        <source>敞口上限</source>
        <translation>Max exposure</translation>
    </message>
    <message>
        <source>挂单敞口上限</source>
        <translation>Max pending</translation>
    </message>
    <message>
        <source>变化</source>
        <translation>Change</translation>
    </message>
    <message>
        <source>服务器：数量/敞口/挂单</source>
        <translation>On server</translation>
    </message>
</context>
<context>
    <name>PoolsView</name>
    <message>
        <source>交易员</source>
        <translation>Trader</translation>
    </message>
    <message>
        <source>券池数量</source>
        <translation>Pool qty</translation>
    </message>
    <message>
        <source>公共数量</source>
        <translation>Public qty</translation>
    </message>
    <message>
        <source>敞口上限</source>
        <translation>Max exposure</translation>
    </message>
    <message>
        <source>挂单敞口上限</source>
        <translation>Max pending</translation>
    </message>
    <message>
        <source>公共券池并入私有行(&amp;M)</source>
        <translation>&amp;Merge public pools into private rows</translation>
    </message>
    <message>
        <source>删除券池(&amp;D)…</source>
        <translation>&amp;Delete pools…</translation>
    </message>
    <message>
        <source>合并显示时不能删除</source>
        <translation>Merged rows cannot be deleted</translation>
    </message>
    <message>
        <source>删除 %1 个券池？</source>
        <translation>Delete pools: %1?</translation>
    </message>
    <message>
        <source>删除 %1 个券池：%2</source>
        <translation>Delete pools: %1 - %2</translation>
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
    <name>ProductsView</name>
    <message>
        <source>应用(&amp;Y)…</source>
        <translation>Appl&amp;y…</translation>
    </message>
    <message>
        <source>还原</source>
        <translation>Revert</translation>
    </message>
    <message>
        <source>产品</source>
        <translation>Product</translation>
    </message>
    <message>
        <source>资金账号</source>
        <translation>Account</translation>
    </message>
    <message>
        <source>变化</source>
        <translation>Change</translation>
    </message>
    <message>
        <source>，</source>
        <translation>, </translation>
    </message>
    <message>
        <source>将启用</source>
        <translation>to be enabled</translation>
    </message>
    <message>
        <source>将停用</source>
        <translation>to be disabled</translation>
    </message>
    <message>
        <source>启用</source>
        <translation>Enable</translation>
    </message>
    <message>
        <source>停用</source>
        <translation>Disable</translation>
    </message>
    <message>
        <source>增加账号：%1</source>
        <translation>Accounts added: %1</translation>
    </message>
    <message>
        <source>去掉账号：%1</source>
        <translation>Accounts removed: %1</translation>
    </message>
    <message>
        <source>修改启用T0的产品，并重新读取资源和券池？</source>
        <translation>Change the T0 products and load resources and pools again?</translation>
    </message>
    <message>
        <source>应用中…</source>
        <translation>Applying…</translation>
    </message>
    <message>
        <source>结果未知：没有收到应答，正在重新读取，请核对</source>
        <translation>Result unknown: no answer came; loading again, please check</translation>
    </message>
    <message>
        <source>T0产品：%1</source>
        <translation>T0 products: %1</translation>
    </message>
    <message>
        <source>没有读到启用T0的产品，刷新后才能修改</source>
        <translation>The products that trade T0 could not be read; refresh before you change them</translation>
    </message>
    <message>
        <source>正在读取启用T0的产品</source>
        <translation>The products that trade T0 are being read</translation>
    </message>
</context>
<context>
    <name>ProfitColumns</name>
    <message>
        <source>账户名称</source>
        <translation>Account name</translation>
    </message>
    <message>
        <source>买入量</source>
        <translation>Bought qty</translation>
    </message>
    <message>
        <source>卖出量</source>
        <translation>Sold qty</translation>
    </message>
    <message>
        <source>敞口量</source>
        <translation>Open qty</translation>
    </message>
    <message>
        <source>均价</source>
        <translation>Avg price</translation>
    </message>
    <message>
        <source>现价</source>
        <translation>Last</translation>
    </message>
    <message>
        <source>买入额</source>
        <translation>Bought amt</translation>
    </message>
    <message>
        <source>卖出额</source>
        <translation>Sold amt</translation>
    </message>
    <message>
        <source>浮动盈亏</source>
        <translation>Float P/L</translation>
    </message>
    <message>
        <source>已实现</source>
        <translation>Realised</translation>
    </message>
    <message>
        <source>总盈亏</source>
        <translation>Total P/L</translation>
    </message>
    <message>
        <source>敞口金额</source>
        <translation>Exposure amt</translation>
    </message>
    <message>
        <source>敞口限额</source>
        <translation>Exposure limit</translation>
    </message>
    <message>
        <source>占限额</source>
        <translation>Of limit</translation>
    </message>
    <message>
        <source>行数</source>
        <translation>Rows</translation>
    </message>
    <message>
        <source>无行情</source>
        <translation>No price</translation>
    </message>
</context>
<context>
    <name>ProfitFilterBar</name>
    <message>
        <source>只看有成交或敞口</source>
        <translation>Traded or exposed only</translation>
    </message>
    <message>
        <source>明细</source>
        <translation>Detail</translation>
    </message>
    <message>
        <source>按标的</source>
        <translation>By security</translation>
    </message>
    <message>
        <source>按交易员</source>
        <translation>By trader</translation>
    </message>
    <message>
        <source>按账户</source>
        <translation>By account</translation>
    </message>
    <message>
        <source>全部交易员</source>
        <translation>All traders</translation>
    </message>
    <message>
        <source>全部账户</source>
        <translation>All accounts</translation>
    </message>
    <message>
        <source>全部标的</source>
        <translation>All securities</translation>
    </message>
</context>
<context>
    <name>ProfitPage</name>
    <message>
        <source>盈亏</source>
        <translation>Profit</translation>
    </message>
    <message>
        <source>按标的</source>
        <translation>By security</translation>
    </message>
    <message>
        <source>按交易员</source>
        <translation>By trader</translation>
    </message>
    <message>
        <source>盈亏排名</source>
        <translation>Profit ranking</translation>
    </message>
</context>
<context>
    <name>ProfitTotals</name>
    <message>
        <source>合计 %1 行</source>
        <translation>Rows: %1</translation>
    </message>
    <message>
        <source>浮动 %1</source>
        <translation>Float %1</translation>
    </message>
    <message>
        <source>已实现 %1</source>
        <translation>Realised %1</translation>
    </message>
    <message>
        <source>总盈亏 %1</source>
        <translation>Total P/L %1</translation>
    </message>
    <message>
        <source>（受限 %1 / 限额 %2）</source>
        <translation> (limited %1 / limit %2)</translation>
    </message>
    <message>
        <source>敞口 %1%2</source>
        <translation>Exposure %1%2</translation>
    </message>
    <message>
        <source>%1 行无行情</source>
        <translation>Rows without price: %1</translation>
    </message>
</context>
<context>
    <name>QuantityDialog</name>
    <message>
        <source>数量</source>
        <translation>Qty</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>QueueView</name>
    <message>
        <source>买一</source>
        <translation>Bid 1</translation>
    </message>
    <message>
        <source>卖一</source>
        <translation>Ask 1</translation>
    </message>
    <message>
        <source>%1 %2&#x3000;%3 笔（手）</source>
        <translation>%1 %2   Orders: %3 (lots)</translation>
    </message>
</context>
<context>
    <name>QuoteView</name>
    <message>
        <source>未选证券</source>
        <translation>No security chosen</translation>
    </message>
    <message>
        <source>%1 %2 %3</source>
        <translation>%1 %2 %3</translation>
    </message>
    <message>
        <source>%1&#x3000;%2%3</source>
        <translation>%1   %2%3</translation>
    </message>
    <message>
        <source>涨停 %1&#x3000;跌停 %2&#x3000;昨收 %3</source>
        <translation>Up limit %1   Down limit %2   Prev close %3</translation>
    </message>
</context>
<context>
    <name>RecordTable</name>
    <message>
        <source>查找</source>
        <translation>Find</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>导出</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>CSV 文件 (*.csv)</source>
        <translation>CSV files (*.csv)</translation>
    </message>
    <message>
        <source>已导出到 %1</source>
        <translation>Exported to %1</translation>
    </message>
    <message>
        <source>导出失败：%1</source>
        <translation>Export failed: %1</translation>
    </message>
    <message>
        <source>复制</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>导出…</source>
        <translation>Export…</translation>
    </message>
    <message>
        <source>列</source>
        <translation>Columns</translation>
    </message>
</context>
<context>
    <name>RequestModel</name>
    <message>
        <source>发出时间</source>
        <translation>Sent</translation>
    </message>
    <message>
        <source>请求</source>
        <translation>Request</translation>
    </message>
    <message>
        <source>耗时(毫秒)</source>
        <translation>Took (ms)</translation>
    </message>
    <message>
        <source>结果</source>
        <translation>Result</translation>
    </message>
    <message>
        <source>已应答</source>
        <translation>Answered</translation>
    </message>
    <message>
        <source>超时</source>
        <translation>Timed out</translation>
    </message>
    <message>
        <source>未发出</source>
        <translation>Not sent</translation>
    </message>
</context>
<context>
    <name>ResourceRows</name>
    <message>
        <source>资金账号</source>
        <translation>Account</translation>
    </message>
    <message>
        <source>代码</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>市场</source>
        <translation>Market</translation>
    </message>
    <message>
        <source>数量</source>
        <translation>Qty</translation>
    </message>
    <message>
        <source>交易员</source>
        <translation>Trader</translation>
    </message>
    <message>
        <source>券池数量</source>
        <translation>Pool qty</translation>
    </message>
    <message>
        <source>不是整数</source>
        <translation>not a whole number</translation>
    </message>
    <message>
        <source>数字过大</source>
        <translation>the number is too large</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1“%2”：%3</source>
        <translation>%1 &quot;%2&quot;: %3</translation>
    </message>
    <message>
        <source>没有填写</source>
        <translation>nothing is given</translation>
    </message>
    <message>
        <source>证券不存在</source>
        <translation>the security does not exist</translation>
    </message>
    <message>
        <source>该代码只在市场%1</source>
        <translation>this code is only in market %1</translation>
    </message>
    <message>
        <source>、</source>
        <translation>, </translation>
    </message>
    <message>
        <source>该代码在多个市场：%1，请写明</source>
        <translation>this code is in several markets: %1; say which</translation>
    </message>
    <message>
        <source>公共券池</source>
        <translation>Public pool</translation>
    </message>
    <message>
        <source>交易员不存在</source>
        <translation>the trader does not exist</translation>
    </message>
    <message>
        <source>有券池数量而没有交易员</source>
        <translation>a pool quantity without a trader</translation>
    </message>
    <message>
        <source>与券池数量不同：有交易员的行按券池数量设资源</source>
        <translation>differs from the pool quantity: rows with a trader set the resource by their pool quantity</translation>
    </message>
    <message>
        <source>与第%1行重复</source>
        <translation>the same as row %1</translation>
    </message>
    <message>
        <source>同一标的有的行有交易员，有的没有</source>
        <translation>some rows of the security have a trader, some do not</translation>
    </message>
    <message>
        <source>不能为负数</source>
        <translation>must not be negative</translation>
    </message>
    <message>
        <source>应大于0</source>
        <translation>must be more than 0</translation>
    </message>
    <message>
        <source>不能超过%1</source>
        <translation>must not exceed %1</translation>
    </message>
    <message>
        <source>应为%1的整数倍</source>
        <translation>must be a multiple of %1</translation>
    </message>
    <message>
        <source>缺少这一列</source>
        <translation>this column is missing</translation>
    </message>
</context>
<context>
    <name>ResourcesView</name>
    <message>
        <source>，</source>
        <translation>, </translation>
    </message>
    <message>
        <source>资源数量</source>
        <translation>Resource qty</translation>
    </message>
    <message>
        <source>公共</source>
        <translation>Public</translation>
    </message>
    <message>
        <source>私有</source>
        <translation>Private</translation>
    </message>
    <message>
        <source>未分配</source>
        <translation>Free</translation>
    </message>
    <message>
        <source>分配比例</source>
        <translation>Allocated</translation>
    </message>
    <message>
        <source>交易员</source>
        <translation>Trader</translation>
    </message>
    <message>
        <source>    券池 %1 %2</source>
        <translation>    Pool: %1 %2</translation>
    </message>
    <message>
        <source>新增(&amp;N)…</source>
        <translation>&amp;New…</translation>
    </message>
    <message>
        <source>改数量(&amp;E)…</source>
        <translation>&amp;Edit quantity…</translation>
    </message>
    <message>
        <source>删除(&amp;D)…</source>
        <translation>&amp;Delete…</translation>
    </message>
    <message>
        <source>%1，已分配 %2</source>
        <translation>%1, allocated %2</translation>
    </message>
    <message>
        <source>修改 %1</source>
        <translation>Edit %1</translation>
    </message>
    <message>
        <source>删除 %1 个资源和它们的券池？</source>
        <translation>Delete the chosen resources (%1) and their pools?</translation>
    </message>
    <message>
        <source>删除 %1 个资源</source>
        <translation>Delete resources (%1)</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>ResultsView</name>
    <message>
        <source>结果</source>
        <translation>Result</translation>
    </message>
    <message>
        <source>下单结果</source>
        <translation>Results</translation>
    </message>
    <message>
        <source>已报</source>
        <translation>Accepted</translation>
    </message>
    <message>
        <source>结果未知</source>
        <translation>Unknown</translation>
    </message>
    <message>
        <source>发送中</source>
        <translation>Sending</translation>
    </message>
    <message>
        <source>失败</source>
        <translation>Failed</translation>
    </message>
    <message>
        <source>未提交</source>
        <translation>Not sent</translation>
    </message>
</context>
<context>
    <name>SharedColumns</name>
    <message>
        <source>资金账号</source>
        <translation>Account</translation>
    </message>
    <message>
        <source>代码</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>名称</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>市场</source>
        <translation>Market</translation>
    </message>
    <message>
        <source>交易员</source>
        <translation>Trader</translation>
    </message>
</context>
<context>
    <name>SheetText</name>
    <message>
        <source>第%1行既不是UTF-8也不是GB18030编码</source>
        <translation>Row %1 is neither UTF-8 nor GB18030</translation>
    </message>
    <message>
        <source>第%1行的引号没有结束</source>
        <translation>The quotes in row %1 are not closed</translation>
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
        <translation>SH-HK</translation>
    </message>
    <message>
        <source>深港通</source>
        <translation>SZ-HK</translation>
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
    <message>
        <source>数据 %1 秒前</source>
        <translation>Data %1 s old</translation>
    </message>
    <message>
        <source>数据同步中</source>
        <translation>Data being fetched</translation>
    </message>
    <message>
        <source>数据已过时 %1 秒</source>
        <translation>Data stale for %1 s</translation>
    </message>
</context>
<context>
    <name>StatusLineFamilies</name>
    <message>
        <source>过时</source>
        <translation>stale</translation>
    </message>
    <message>
        <source>未加载</source>
        <translation>not loaded</translation>
    </message>
    <message>
        <source>加载中</source>
        <translation>loading</translation>
    </message>
    <message>
        <source>部分失败</source>
        <translation>partly failed</translation>
    </message>
    <message>
        <source>失败</source>
        <translation>failed</translation>
    </message>
</context>
<context>
    <name>StatusLineFigures</name>
    <message>
        <source>敞口 %1</source>
        <translation>Exposure %1</translation>
    </message>
    <message>
        <source>盈亏 %1</source>
        <translation>Profit %1</translation>
    </message>
    <message>
        <source>全部交易员</source>
        <translation>All traders</translation>
    </message>
    <message>
        <source>本人</source>
        <translation>Own</translation>
    </message>
    <message>
        <source>，%1 行无行情未计入</source>
        <translation>, without price and not counted: %1</translation>
    </message>
    <message>
        <source>%1，%2 行%3</source>
        <translation>%1, rows: %2%3</translation>
    </message>
</context>
<context>
    <name>StatusPage</name>
    <message>
        <source>状态</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>请求</source>
        <translation>Requests</translation>
    </message>
    <message>
        <source>业务消息</source>
        <translation>Business messages</translation>
    </message>
    <message>
        <source>日志</source>
        <translation>Log</translation>
    </message>
    <message>
        <source>复制诊断信息</source>
        <translation>Copy diagnostics</translation>
    </message>
    <message>
        <source>诊断信息已复制</source>
        <translation>Diagnostics copied</translation>
    </message>
    <message>
        <source>显示心跳</source>
        <translation>Show heartbeats</translation>
    </message>
</context>
<context>
    <name>SymbolBox</name>
    <message>
        <source>证券代码</source>
        <translation>Security code</translation>
    </message>
    <message>
        <source>代码、名称或首字母</source>
        <translation>Code, name or initials</translation>
    </message>
    <message>
        <source>没有可交易的证券“%1”</source>
        <translation>Nothing to trade is called &quot;%1&quot;</translation>
    </message>
</context>
<context>
    <name>SymbolSettingsDialog</name>
    <message>
        <source>默认担保品买卖</source>
        <translation>Collateral by default</translation>
    </message>
    <message>
        <source>%1 %2 交易设置</source>
        <translation>Trading settings of %1 %2</translation>
    </message>
    <message>
        <source>不拆单</source>
        <translation>No split</translation>
    </message>
    <message>
        <source>保存</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>删除设置</source>
        <translation>Delete settings</translation>
    </message>
    <message>
        <source>拆单数量</source>
        <translation>Split quantity</translation>
    </message>
    <message>
        <source>默认数量</source>
        <translation>Default quantity</translation>
    </message>
</context>
<context>
    <name>TradeColumns</name>
    <message>
        <source>时间</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>方向</source>
        <translation>Side</translation>
    </message>
    <message>
        <source>价格</source>
        <translation>Price</translation>
    </message>
    <message>
        <source>数量</source>
        <translation>Qty</translation>
    </message>
    <message>
        <source>已成量</source>
        <translation>Filled qty</translation>
    </message>
    <message>
        <source>状态</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>委托号</source>
        <translation>Order ID</translation>
    </message>
    <message>
        <source>说明</source>
        <translation>Note</translation>
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
        <translation>New trading day %1: orders left open before it have expired</translation>
    </message>
    <message>
        <source>：%1</source>
        <translation>: %1</translation>
    </message>
</context>
<context>
    <name>TradeTexts</name>
    <message>
        <source>买入</source>
        <translation>Buy</translation>
    </message>
    <message>
        <source>卖出</source>
        <translation>Sell</translation>
    </message>
    <message>
        <source>担保品买入</source>
        <translation>Collateral buy</translation>
    </message>
    <message>
        <source>担保品卖出</source>
        <translation>Collateral sell</translation>
    </message>
    <message>
        <source>已报</source>
        <translation>Accepted</translation>
    </message>
    <message>
        <source>部成</source>
        <translation>Part filled</translation>
    </message>
    <message>
        <source>已成</source>
        <translation>Filled</translation>
    </message>
    <message>
        <source>已撤</source>
        <translation>Cancelled</translation>
    </message>
    <message>
        <source>已失效</source>
        <translation>Expired</translation>
    </message>
</context>
<context>
    <name>TraderPage</name>
    <message>
        <source>交易</source>
        <translation>Trade</translation>
    </message>
    <message>
        <source>发送前确认</source>
        <translation>Confirm before sending</translation>
    </message>
    <message>
        <source>交易账户（按优先级）</source>
        <translation>Accounts by priority</translation>
    </message>
    <message>
        <source>设置…</source>
        <translation>Settings…</translation>
    </message>
    <message>
        <source>该证券的拆单数量、默认数量和担保品默认值</source>
        <translation>Split quantity, default quantity and collateral default of the security</translation>
    </message>
    <message>
        <source>有风险提示的委托总会要求确认</source>
        <translation>Orders with a warning always ask for confirmation</translation>
    </message>
    <message>
        <source>证券</source>
        <translation>Security</translation>
    </message>
    <message>
        <source>买入</source>
        <translation>Buy</translation>
    </message>
    <message>
        <source>卖出</source>
        <translation>Sell</translation>
    </message>
    <message>
        <source>委托</source>
        <translation>Orders</translation>
    </message>
    <message>
        <source>额度与敞口</source>
        <translation>Quota and exposure</translation>
    </message>
    <message>
        <source>单面板/双面板</source>
        <translation>One or two panels</translation>
    </message>
    <message>
        <source>选择证券</source>
        <translation>Choose a security</translation>
    </message>
    <message>
        <source>请先选择证券</source>
        <translation>Choose a security first</translation>
    </message>
    <message>
        <source>已报 %1 笔</source>
        <translation>Accepted: %1</translation>
    </message>
    <message>
        <source>失败 %1 笔：%2</source>
        <translation>Failed: %1 (%2)</translation>
    </message>
    <message>
        <source>结果未知 %1 笔，正在查询</source>
        <translation>Result unknown: %1, querying</translation>
    </message>
    <message>
        <source>；</source>
        <translation>; </translation>
    </message>
    <message>
        <source>未发送</source>
        <translation>Not sent</translation>
    </message>
</context>
<context>
    <name>TradersSwitchBar</name>
    <message>
        <source>暂停交易(&amp;H)…</source>
        <translation>&amp;Halt…</translation>
    </message>
    <message>
        <source>只减仓(&amp;R)…</source>
        <translation>&amp;Reduce only…</translation>
    </message>
    <message>
        <source>恢复交易(&amp;A)…</source>
        <translation>&amp;Activate…</translation>
    </message>
    <message>
        <source>已暂停</source>
        <translation>halted</translation>
    </message>
    <message>
        <source>只减仓</source>
        <translation>reduce only</translation>
    </message>
    <message>
        <source>正常</source>
        <translation>active</translation>
    </message>
    <message>
        <source>没有读到交易员的交易状态，再次打开本页时重读</source>
        <translation>The traders&apos; switches were not read; they are read again when this page is shown again</translation>
    </message>
    <message>
        <source>%1：%2 → %3</source>
        <translation>%1: %2 → %3</translation>
    </message>
    <message>
        <source>把 %1 个交易员设为“%2”？</source>
        <translation>Set %1 traders to “%2”?</translation>
    </message>
    <message>
        <source>，</source>
        <translation>, </translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>已报出的委托仍然有效，需要时另行撤单</source>
        <translation>Orders that were sent stay live; cancel them where needed</translation>
    </message>
</context>
<context>
    <name>TradersView</name>
    <message>
        <source>券池数</source>
        <translation>Pools</translation>
    </message>
    <message>
        <source>券池数量</source>
        <translation>Pool qty</translation>
    </message>
    <message>
        <source>已买</source>
        <translation>Bought</translation>
    </message>
    <message>
        <source>已卖</source>
        <translation>Sold</translation>
    </message>
    <message>
        <source>敞口</source>
        <translation>Exposure</translation>
    </message>
    <message>
        <source>敞口上限</source>
        <translation>Max exposure</translation>
    </message>
    <message>
        <source>敞口比例</source>
        <translation>Exposure %</translation>
    </message>
    <message>
        <source>浮动盈亏</source>
        <translation>Float P/L</translation>
    </message>
    <message>
        <source>实现盈亏</source>
        <translation>Realised P/L</translation>
    </message>
    <message>
        <source>总盈亏</source>
        <translation>Total P/L</translation>
    </message>
    <message>
        <source>无价行数</source>
        <translation>No price</translation>
    </message>
    <message>
        <source>未完成委托</source>
        <translation>Open orders</translation>
    </message>
    <message>
        <source>合计：券池 %1 个，数量 %2，已买 %3，已卖 %4，敞口 %5，总盈亏 %6，未完成委托 %7，无价 %8 行</source>
        <translation>Total: pools %1, quantity %2, bought %3, sold %4, exposure %5, total P/L %6, open orders %7, rows without price %8</translation>
    </message>
    <message>
        <source>交易</source>
        <translation>Trading</translation>
    </message>
</context>
<context>
    <name>UsageView</name>
    <message>
        <source>平仓清单（仅持仓）</source>
        <translation>Closing list (open only)</translation>
    </message>
    <message>
        <source>回车或双击一行填入平仓委托，不会自动发送</source>
        <translation>Return or a double click fills in the closing order; nothing is sent</translation>
    </message>
    <message>
        <source>额度与敞口</source>
        <translation>Quota and exposure</translation>
    </message>
    <message>
        <source>敞口数量</source>
        <translation>Open qty</translation>
    </message>
    <message>
        <source>券池</source>
        <translation>Pool</translation>
    </message>
    <message>
        <source>可买</source>
        <translation>Can buy</translation>
    </message>
    <message>
        <source>可卖</source>
        <translation>Can sell</translation>
    </message>
    <message>
        <source>已买</source>
        <translation>Bought</translation>
    </message>
    <message>
        <source>已卖</source>
        <translation>Sold</translation>
    </message>
    <message>
        <source>均价</source>
        <translation>Avg price</translation>
    </message>
    <message>
        <source>最新价</source>
        <translation>Last</translation>
    </message>
    <message>
        <source>敞口金额</source>
        <translation>Exposure amt</translation>
    </message>
    <message>
        <source>敞口上限</source>
        <translation>Max exposure</translation>
    </message>
    <message>
        <source>浮动盈亏</source>
        <translation>Float P/L</translation>
    </message>
    <message>
        <source>实现盈亏</source>
        <translation>Realised P/L</translation>
    </message>
    <message>
        <source>总盈亏</source>
        <translation>Total P/L</translation>
    </message>
    <message>
        <source>敞口 %1&#x3000;浮动 %2&#x3000;实现 %3&#x3000;总盈亏 %4</source>
        <translation>Exposure %1   Float %2   Realised %3   Total P/L %4</translation>
    </message>
    <message>
        <source>&#x3000;（%1 行无价，未计入）</source>
        <translation>   (rows without price, not counted: %1)</translation>
    </message>
    <message>
        <source>该行没有敞口，不需平仓</source>
        <translation>Nothing is open in this row</translation>
    </message>
</context>
</TS>
