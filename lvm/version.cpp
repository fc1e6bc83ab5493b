#include "orb/lvm.h"

#include "build_date.h"

const char* const libzqorb_lvm_version = ZQORB_LVM_VERSION;
const char* const libzqorb_lvm_build_date = buildDate;
