#pragma once

// The folder that stands for the device's root: empty on a device, where the fixed paths are
// used as they are; on the host, the folder named by OPTOQUILL_ROOT.
const char* optoquillDeviceRoot();
