# find_package(zqorb_lvm_testkit CONFIG REQUIRED): zqorb_lvm_testkit_RUN, the program to put in front of a test's command,
# and zqorb_lvm_testkit_HUB_ROOTFS, the one that packs an archive.
get_filename_component(zqorb_lvm_testkit_DIR_OF_KIT ${CMAKE_CURRENT_LIST_DIR}/../../.. ABSOLUTE)
set(zqorb_lvm_testkit_RUN ${zqorb_lvm_testkit_DIR_OF_KIT}/with-stand-ins)
set(zqorb_lvm_testkit_HUB_ROOTFS ${zqorb_lvm_testkit_DIR_OF_KIT}/hub-rootfs)
