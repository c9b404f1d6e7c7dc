#pragma once

// The folder that stands for the device's root: empty on a device, where the fixed paths are
// used as they are; on the host, the folder named by OPTOQUILL_ROOT.
const char* optoquillDeviceRoot();

// Readies the device before the first stage: nothing on a device. On the host the device in a
// folder is opened (its properties file read, its log file opened), and a run whose folder
// cannot be used ends here, with one line on standard error and status 2.
void optoquillOpenDevice();
