#include "KeysDialog.h"

#include "CommandList.h"

#include <QtWidgets/QAction>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QKeySequenceEdit>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeWidget>

KeysDialog::KeysDialog(CommandList &commands, QWidget *parent)
    : QDialog(parent)
    , m_commands(commands)
    , m_search(new QLineEdit)
    , m_list(new QTreeWidget)
    , m_keys(new QKeySequenceEdit)
    , m_fault(new QLabel)
{
    setWindowTitle(tr("快捷键"));
    setObjectName(QStringLiteral("keys"));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(560, 620);
    build();
    connect(m_search, &QLineEdit::textChanged, this, &KeysDialog::search);
    connect(m_list, &QTreeWidget::currentItemChanged, this, &KeysDialog::choose);
    connect(&m_commands, &CommandList::changed, this, &KeysDialog::fill);
    fill();
    m_search->setFocus();
}

void KeysDialog::build()
{
    m_search->setObjectName(QStringLiteral("keys.search"));
    m_search->setPlaceholderText(tr("搜索命令或按键"));
    m_list->setObjectName(QStringLiteral("keys.list"));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setHeaderLabels({tr("命令"), tr("按键"), tr("默认")});
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_keys->setObjectName(QStringLiteral("keys.edit"));
    m_fault->setObjectName(QStringLiteral("keys.fault"));
    m_fault->setWordWrap(true);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_search);
    layout->addWidget(m_list, 1);
    layout->addLayout(makeEditRow());
    layout->addWidget(m_fault);
    layout->addLayout(makeLastRow());
}

/// A button that Enter in the search or in the list does not press.
QPushButton *KeysDialog::makeButton(const char *name, const QString &text)
{
    auto *button = new QPushButton(text);
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    return button;
}

QLayout *KeysDialog::makeEditRow()
{
    QPushButton *set = makeButton("keys.apply", tr("应用"));
    connect(set, &QPushButton::clicked, this, &KeysDialog::apply);
    QPushButton *clear = makeButton("keys.clear", tr("清除"));
    connect(clear, &QPushButton::clicked, this, [this] {
        m_keys->clear();
        apply();
    });
    auto *row = new QHBoxLayout;
    row->addWidget(new QLabel(tr("新按键")));
    row->addWidget(m_keys, 1);
    row->addWidget(set);
    row->addWidget(clear);
    return row;
}

QLayout *KeysDialog::makeLastRow()
{
    QPushButton *defaults = makeButton("keys.defaults", tr("全部还原默认"));
    connect(defaults, &QPushButton::clicked, &m_commands, &CommandList::restoreDefaults);
    QPushButton *close = makeButton("keys.close", tr("关闭"));
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto *row = new QHBoxLayout;
    row->addWidget(defaults);
    row->addStretch();
    row->addWidget(close);
    return row;
}

void KeysDialog::fill()
{
    const QString chosen = chosenId();
    m_list->clear();
    for (const CommandList::Command &command : m_commands.commands()) {
        auto *item =
            new QTreeWidgetItem(m_list, {command.description.text, command.keys().toString(QKeySequence::NativeText),
                                         command.description.keys.toString(QKeySequence::NativeText)});
        item->setData(0, Qt::UserRole, command.description.id);
        if (command.description.id == chosen)
            m_list->setCurrentItem(item);
    }
    m_list->resizeColumnToContents(1);
    m_list->resizeColumnToContents(2);
    search(m_search->text());
}

void KeysDialog::search(const QString &text)
{
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        QTreeWidgetItem *item = m_list->topLevelItem(row);
        item->setHidden(!item->text(0).contains(text, Qt::CaseInsensitive) &&
                        !item->text(1).contains(text, Qt::CaseInsensitive));
    }
}

QString KeysDialog::chosenId() const
{
    const QTreeWidgetItem *item = m_list->currentItem();
    return item ? item->data(0, Qt::UserRole).toString() : QString();
}

void KeysDialog::choose()
{
    const CommandList::Command *command = m_commands.find(chosenId());
    m_keys->setKeySequence(command ? command->keys() : QKeySequence());
    m_fault->clear();
}

void KeysDialog::apply()
{
    // The edit takes keys that follow each other within a second for one sequence; a command has one: the last.
    const QKeySequence typed = m_keys->keySequence();
    const QKeySequence keys = typed.isEmpty() ? typed : QKeySequence(typed[typed.count() - 1]);
    m_keys->setKeySequence(keys);
    const QString fault = chosenId().isEmpty() ? tr("请先选择一个命令") : m_commands.setKeys(chosenId(), keys);
    // Setting fills the list anew, which clears the text.
    m_fault->setText(fault);
}
