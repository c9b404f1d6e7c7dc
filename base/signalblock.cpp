#include "base/signalblock.h"

SignalBlock::SignalBlock() {
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGHUP);
    sigaddset(&blocked, SIGINT);
    sigaddset(&blocked, SIGTERM);
    sigprocmask(SIG_BLOCK, &blocked, &previous);
}

SignalBlock::~SignalBlock() {
    sigprocmask(SIG_SETMASK, &previous, nullptr);
}
