#pragma once

#include <signal.h>

// Holds off hang-up, interrupt and terminate while something that must not be left behind
// exists (a temporary file, the AE store's file on shared storage). A signal that arrives
// meanwhile stays pending and takes its usual effect, ending the run, once the block is lifted
// and the thing is gone. No handler runs, so nothing but the kernel acts on the signal. Blocks
// nest: each restores the mask it found.
class SignalBlock {
  public:
    SignalBlock();
    ~SignalBlock();
    SignalBlock(const SignalBlock&) = delete;
    SignalBlock& operator=(const SignalBlock&) = delete;

  private:
    sigset_t previous;
};
