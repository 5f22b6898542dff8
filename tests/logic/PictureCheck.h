#pragma once

#include "Chance.h"
#include "HubProbe.h"
#include "Model.h"

#include <QtCore/QDebug>

/// Whether a hub holds and answers what the model does. Every difference is one text.
class PictureCheck
{
public:
    PictureCheck(const ManualT0LogicPrivate &hub, const Model &model)
        : m_hub(hub)
        , m_model(model)
    {}

    void compareHeld();                  ///< all that is held, states and indexes
    void compareRows();                  ///< the rows that are held, but for the limits of pools
    void compareLookups(Chance &chance); ///< every read operation with one filter, of any shape
    template <typename T> void differ(const QString &what, const T &found, const T &expected);

    const QStringList &differences() const { return m_differences; }

private:
    void differ(const QString &what, const RecordList &found, const RecordList &expected, bool inOrder = false);
    void compareAlike(); ///< what first and later answers leave alike
    void compareOrders(Chance &chance, const QStringList &accounts, const QString &filter);

    const ManualT0LogicPrivate &m_hub;
    const Model &m_model;
    QStringList m_differences;
};

template <typename T> void PictureCheck::differ(const QString &what, const T &found, const T &expected)
{
    if (found == expected)
        return;
    QString difference;
    QDebug(&difference) << what << "\n hub:  " << found << "\n model:" << expected;
    m_differences.append(difference);
}
