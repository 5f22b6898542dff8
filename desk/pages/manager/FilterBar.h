#pragma once

#include "VariantRecord.h"

#include <QtCore/QStringList>
#include <QtWidgets/QWidget>

class ManualT0TraderCombo;
class MasterComboBox;
class QLineEdit;

/// What of resources or pools a manager wants to see: of a product, an asset property, a trader, with a text in code
/// or name. Follows products and traders; what is chosen stays chosen.
class FilterBar : public QWidget
{
    Q_OBJECT

public:
    /// name: fixed English; the inputs are name.product, name.assetProp, name.symbol, name.trader.
    explicit FilterBar(const QString &name, QWidget *parent = nullptr);
    void hideTraders(); ///< where nobody has anything yet

    bool isAll() const;             ///< only the text narrows
    QStringList products() const;   ///< every enabled one when none is chosen
    QString assetProp() const;      ///< empty: any
    QStringList assetProps() const; ///< empty: any
    QStringList traders() const;    ///< empty: any

    bool hasText(const VariantRecord &row) const; ///< the row's symbol or name has the text

signals:
    void changed();
    void textChanged();

private:
    void offer();

    MasterComboBox *m_product;
    MasterComboBox *m_assetProp;
    ManualT0TraderCombo *m_trader;
    QLineEdit *m_text;
};
