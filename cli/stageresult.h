#pragma once

// What a stage that may end the run tells the sequence: go on, or end with a status.
struct StageResult {
    bool endsRun = false;
    int status = 0;

    static StageResult goOn() { return {}; }
    static StageResult endRun(int status) { return {true, status}; }
};
