#pragma once

// The folder that stands for the device's root: empty on a device, where the fixed paths are
// used as they are; on the host, the folder named by OPTOQUILL_ROOT.
const char* optoquillDeviceRoot();

// The owner that the stores give the calibration files, whose ids are `systemId`: on the host,
// where only root may give a file away, another user's stores leave the files that user's own,
// and those are the ids the audit expects.
void optoquillFileOwner(unsigned systemId, unsigned* uid, unsigned* gid);

// Readies the device before the first stage: nothing on a device. On the host the device in a
// folder is opened (its properties file read, its log file opened), and a run whose folder
// cannot be used ends here, with one line on standard error and status 2.
void optoquillOpenDevice();
