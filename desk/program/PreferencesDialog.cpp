#include "PreferencesDialog.h"

#include "Appearance.h"
#include "DeskSettings.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QSpinBox>

namespace {

const QLatin1String soundSetting("sound");
const QLatin1String noticesSetting("notices");

QCheckBox *checkBox(const char *name, const QString &text, bool isChecked)
{
    auto *box = new QCheckBox(text);
    box->setObjectName(QString::fromLatin1(name));
    box->setChecked(isChecked);
    return box;
}

} // namespace

bool PreferencesDialog::isSoundOn()
{
    return DeskSettings::value(soundSetting, false).toBool();
}

bool PreferencesDialog::areNoticesOn()
{
    return DeskSettings::value(noticesSetting, true).toBool();
}

PreferencesDialog::PreferencesDialog(Appearance &appearance, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(tr("设置"));
    setObjectName(QStringLiteral("preferences"));
    setAttribute(Qt::WA_DeleteOnClose);

    const Appearance::Choice choice = appearance.choice();
    QCheckBox *dark = checkBox("preferences.dark", tr("深色"), choice.isDark);
    QCheckBox *redUp = checkBox("preferences.redUp", tr("红涨绿跌"), choice.isRedUp);
    QCheckBox *notices = checkBox("preferences.notices", tr("显示成交和失效的提示"), areNoticesOn());
    QCheckBox *sound = checkBox("preferences.sound", tr("提示时发声"), isSoundOn());
    auto *points = new QSpinBox;
    points->setObjectName(QStringLiteral("preferences.pointSize"));
    points->setRange(Appearance::smallest, Appearance::largest);
    points->setValue(choice.pointSize);

    const auto choose = [&appearance, dark, redUp, points] {
        appearance.choose({dark->isChecked(), redUp->isChecked(), points->value()});
    };
    connect(dark, &QCheckBox::toggled, this, choose);
    connect(redUp, &QCheckBox::toggled, this, choose);
    connect(points, QOverload<int>::of(&QSpinBox::valueChanged), this, choose);
    connect(notices, &QCheckBox::toggled, this, [](bool on) { DeskSettings::keep(noticesSetting, on); });
    connect(sound, &QCheckBox::toggled, this, [](bool on) { DeskSettings::keep(soundSetting, on); });

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QFormLayout(this);
    layout->addRow(tr("字号"), points);
    for (QCheckBox *box : {dark, redUp, notices, sound})
        layout->addRow(box);
    layout->addRow(buttons);
}
