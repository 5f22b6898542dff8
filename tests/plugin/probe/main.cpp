#include "Probe.h"

// A client process around the installed form of the library, which has one hub for the whole process: each start
// and each end needs a process of its own. Arguments: the scenario and a seed.
int main(int argc, char **argv)
{
    QMap<QString, Scenario> scenarios = startScenarios();
    const QMap<QString, Scenario> exits = exitScenarios();
    for (auto scenario = exits.cbegin(); scenario != exits.cend(); ++scenario)
        scenarios.insert(scenario.key(), scenario.value());

    const Scenario scenario = argc == 3 ? scenarios.value(QString::fromLatin1(argv[1])) : nullptr;
    if (!scenario)
        qFatal("arguments: SCENARIO SEED");
    return scenario(argc, argv, unsigned(QByteArray(argv[2]).toUInt()));
}
