#pragma once

#include <QtCore/QString>

/// What a trader has set for one symbol. Kept by the library.
struct SymbolSettings {
    qint64 cutQty = 0;         ///< larger orders of an account are sent in parts of it; 0: whole
    qint64 defaultQty = 0;     ///< stands in the quantity fields
    bool isCollateral = false; ///< collateral is chosen at first

    /// As when nothing is set, when nothing is.
    static SymbolSettings of(const QString &symbol);
    void keepFor(const QString &symbol) const;
};
