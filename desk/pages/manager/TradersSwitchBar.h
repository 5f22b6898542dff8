#pragma once

#include "VariantRecord.h"

#include <QtCore/QHash>
#include <QtCore/QStringList>
#include <QtWidgets/QWidget>

class QLabel;
class QPushButton;
struct ChangeOutcome;

/// Whether traders may trade: knows every trader's switch as the server has it, and sets those of the chosen ones.
class TradersSwitchBar : public QWidget
{
    Q_OBJECT

public:
    explicit TradersSwitchBar(QWidget *parent = nullptr);

    /// One of Stand_Values::TradeSwitch; empty while it is not known.
    QString switchOf(const QString &trader) const { return m_switches.value(trader); }
    static QString inWords(const QString &tradeSwitch); ///< "--" for what is not known

    void load(); ///< unless it was done
    void setTraders(const QStringList &chosen);

signals:
    void changed(); ///< what switchOf gives

private:
    enum class Loaded { No, Loading, Yes };

    QPushButton *addButton(const QString &name, const QString &text, const QString &tradeSwitch);
    void takeLoaded(bool good, const RecordList &rows);
    void takePushed(const RecordList &rows);
    void showState();
    void ask(const QString &tradeSwitch);
    void send(const QStringList &traders, const QString &tradeSwitch);
    void takeOutcome(const QString &what, const ChangeOutcome &outcome);

    QHash<QString, QString> m_switches;
    QStringList m_chosen;
    Loaded m_loaded = Loaded::No;
    QList<QPushButton *> m_buttons;
    QLabel *m_status;
};
