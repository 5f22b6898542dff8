#pragma once

#include "HostExport.h"
#include "VariantRecord.h"

#include <QtCore/QStringList>

/// The login and the symbol lists. Callable from any thread; results are copies; empty without a session.
class T0_HOST_EXPORT CBusinessDataBase
{
public:
    static CBusinessDataBase *GetInstance();

    /// The login account. Always the text of userID in GetLoginAccountDetail().
    static QString GetLoginAccount();

    /// userID, userName, organCode, Stand_Fields::User::roles; a key may be absent.
    static VariantRecord GetLoginAccountDetail();

    /// Symbols, ascending, of a security type (Orvane_Values::MdcSecurityType) and any of the sub-types and
    /// market suffixes; an empty list does not filter. flag and further: false and empty.
    static QStringList GetSymbolListByTypeList(const QString &type, const QStringList &subTypes,
                                               const QStringList &suffixes, bool flag, const QStringList &further);

private:
    CBusinessDataBase() = default;
};
