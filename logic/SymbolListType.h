#pragma once

#include <QtCore/QStringList>

/// One filter of tradable symbols: the arguments of CBusinessDataBase::GetSymbolListByTypeList, in order.
struct SymbolListType {
    QString type;         ///< security type
    QStringList subTypes; ///< any of them; empty: all
    QStringList suffixes; ///< market suffixes, any of them; empty: all
    bool flag = false;
    QStringList further;
};
