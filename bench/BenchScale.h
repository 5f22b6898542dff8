#pragma once

/// How much one run of the program measures.
struct BenchScale {
    int small = 1000;        ///< records of the small hub
    int large = 100000;      ///< records of the large one
    int answeredPools = 500; ///< pools of the account whose answers are measured, in both hubs
    int repetitions = 7;     ///< of every measurement, both sizes in turn
    int lookups = 20000;     ///< in one measurement
    int pushes = 5000;       ///< in one measurement
    int answers = 20;        ///< in one measurement
    int countedCalls = 2000; ///< lookups whose instructions are counted

    /// So small that it says nothing about speed, only that the program works.
    static BenchScale quick()
    {
        BenchScale scale;
        scale.small = 200;
        scale.large = 2000;
        scale.answeredPools = 100;
        scale.repetitions = 3;
        scale.lookups = 500;
        scale.pushes = 200;
        scale.answers = 3;
        scale.countedCalls = 100;
        return scale;
    }
};
