#include "orb/lvm.h"

const char* const libzqorb_lvm_version = ZQORB_LVM_VERSION;
// The compiler takes the date from SOURCE_DATE_EPOCH when that is set.
const char* const libzqorb_lvm_build_date = __DATE__;
