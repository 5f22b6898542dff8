#include "Bench.h"

#include "Codecs.h"
#include "InitKeys.h"
#include "ManualT0LogicPlugin.h"
#include "ManualT0LogicPresenterClass.h"
#include "OrvaneValues.h"
#include "ReferencePools.h"

#include <QtCore/QThread>

#include <malloc.h>

// The first load of 100,000 pools in 100 pages, from bytes to records that are indexed.

namespace {

using Orvane_Values::RequestExeStatus::success;

constexpr int PageRows = 1000;

QVector<QByteArray> pages(const Codec &codec)
{
    const QVector<Records::Keys> keys = Records::keys(Bench::Large);
    QVector<QByteArray> result;
    for (int first = 0; first < keys.size(); first += PageRows) {
        RecordList rows;
        for (const Records::Keys &of : keys.mid(first, PageRows))
            rows.append(Records::pool(of, Records::LoadedQuantity));
        result.append(codec.encode(rows));
    }
    return result;
}

/// A hub that is loading, beside the presenter whose signal brings the pages.
class LibraryLoad
{
public:
    static constexpr const Codec &codec = Codecs::library;

    LibraryLoad()
    {
        initStates().Reset(initKey(ManualT0Logic::SecurityPools));
        initStates().StartInit(initKey(ManualT0Logic::SecurityPools));
    }
    QObject *receiver() { return &m_hub; }
    void take(RecordList rows) { m_hub.slotQuerySecurityPoolResponse(success, {}, std::move(rows)); }
    void listenTo(ManualT0LogicPresenterClass *presenter)
    {
        QObject::connect(presenter, &ManualT0LogicPresenterClass::signalQuerySecurityPoolResponse, &m_hub,
                         &ManualT0LogicPrivate::slotQuerySecurityPoolResponse);
    }
    int held() const { return m_hub.GetAllSecurityPoolList().size(); }

private:
    ManualT0LogicPrivate m_hub;
};

class ReferenceLoad
{
public:
    static constexpr const Codec &codec = Codecs::cborValue;

    ReferenceLoad()
    {
        qRegisterMetaType<RecordList>("QList<QVariantMap>"); // the hub does it elsewhere
        m_receiver.moveToThread(&m_thread);
        m_thread.start();
    }
    ~ReferenceLoad()
    {
        m_thread.quit();
        m_thread.wait();
    }
    QObject *receiver() { return &m_receiver; }
    void take(RecordList rows) { m_pools.takeFirst(std::move(rows)); }
    void listenTo(ManualT0LogicPresenterClass *presenter)
    {
        QObject::connect(presenter, &ManualT0LogicPresenterClass::signalQuerySecurityPoolResponse, &m_receiver,
                         [this](const QString &, const QVariantMap &, const RecordList &rows) { take(rows); });
    }
    int held() const { return m_pools.list({Records::accounts(), {}, {}, {}}).size(); }

private:
    QThread m_thread;
    QObject m_receiver;
    ReferencePools m_pools{{}};
};

template <typename Work> void onThreadOf(QObject *object, Work work)
{
    QMetaObject::invokeMethod(object, work, Qt::BlockingQueuedConnection);
}

template <typename Load> void queued(Load &load, const QVector<QByteArray> &pages)
{
    auto *presenter = new ManualT0LogicPresenterClass(ManualT0LogicPlugin::instanceId(), nullptr);
    load.listenTo(presenter);
    for (const QByteArray &bytes : pages)
        emit presenter->signalQuerySecurityPoolResponse(success, {}, Load::codec.decode(bytes));
    onThreadOf(load.receiver(), [] {}); // all pages before have been taken
    ZrPresenterClass::release(presenter);
}

template <typename Load> void direct(Load &load, const QVector<QByteArray> &pages)
{
    onThreadOf(load.receiver(), [&] {
        for (const QByteArray &bytes : pages)
            load.take(Load::codec.decode(bytes));
    });
}

/// What of direct() is neither storing nor indexing.
template <typename Load> void decodeAlone(benchmark::State &state)
{
    const QVector<QByteArray> encoded = pages(Load::codec);
    for (auto _ : state) {
        Load load;
        malloc_trim(0);
        QVector<RecordList> decoded;
        const CpuTimer timer(CpuTimer::Process);
        onThreadOf(load.receiver(), [&] {
            for (const QByteArray &bytes : encoded)
                decoded.append(Load::codec.decode(bytes));
        });
        Bench::setTime(state, timer.nanoseconds());
    }
    Bench::setItems(state, Bench::Large);
}

template <typename Load> void run(benchmark::State &state, void (*bring)(Load &load, const QVector<QByteArray> &pages))
{
    static const QVector<QByteArray> encoded = pages(Load::codec);
    for (auto _ : state) {
        malloc_trim(
            0); // else a load works with the pieces that the one before has left, and cost depends on their order
        Load load;
        const CpuTimer timer(CpuTimer::Process); // two threads work
        bring(load, encoded);
        Bench::setTime(state, timer.nanoseconds());
        if (load.held() != Bench::Large)
            state.SkipWithError("not all pools are held");
    }
    Bench::setItems(state, Bench::Large);
}

} // namespace

void Bench::registerLoading()
{
    addTimed("load.queued", "library", Large, [](State &state) { run<LibraryLoad>(state, queued); })->Iterations(1);
    addTimed("load.queued", "reference", Large, [](State &state) { run<ReferenceLoad>(state, queued); })->Iterations(1);
    addTimed("load.direct", "library", Large, [](State &state) { run<LibraryLoad>(state, direct); })->Iterations(1);
    addTimed("load.direct", "reference", Large, [](State &state) { run<ReferenceLoad>(state, direct); })->Iterations(1);
    addTimed("load.decode", "library", Large, decodeAlone<LibraryLoad>)->Iterations(1);
    addTimed("load.decode", "reference", Large, decodeAlone<ReferenceLoad>)->Iterations(1);
}
