#include "base/signalblock.h"

SignalBlock::SignalBlock() {
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGHUP);
    sigaddset(&blocked, SIGINT);
    sigaddset(&blocked, SIGTERM);
    // sigprocmask fails only for an unknown `how`: there is no result to look at.
    sigprocmask(SIG_BLOCK, &blocked, &previous);
}

SignalBlock::~SignalBlock() {
    sigprocmask(SIG_SETMASK, &previous, nullptr);
}
