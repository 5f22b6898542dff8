#pragma once

#include <QtCore/QMap>
#include <QtCore/QPair>
#include <QtWidgets/QWidget>

class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
struct ChangeOutcome;

/// Which asset properties of which products trade T0: every candidate with a tick. What the user ticks stays ticked
/// while the server's state changes below it, and is sent as the whole wanted state when he has seen what it changes.
class ProductsView : public QWidget
{
    Q_OBJECT

public:
    explicit ProductsView(QWidget *parent = nullptr);

private:
    using Property = QPair<QString, QString>; ///< product account, asset property

    void takeState();
    void addProduct(const QString &product, const QStringList &properties);
    void ticked(QTreeWidgetItem *item);
    void showChanges();
    void revert();
    void askToApply();
    void apply();
    void takeOutcome(const ChangeOutcome &outcome);
    bool isEnabledNow(const Property &property) const;
    QString whyNotToSend() const; ///< empty when it may be
    bool isWanted(const Property &property) const;
    QMap<QString, QStringList> wantedState() const;
    QStringList changesInWords() const;

    QMap<QString, QStringList> m_enabled; ///< the library's, as of the last load that succeeded
    QMap<Property, bool> m_ticked;        ///< by the user, other than the library's
    QMap<Property, QTreeWidgetItem *> m_items;
    bool m_isSending = false;

    QTreeWidget *m_tree;
    QPushButton *m_apply;
    QPushButton *m_revert;
    QLabel *m_status;
    QLabel *m_notice; ///< that there is nothing to change
};
