# Our own licence, at the root of each package.
install(FILES LICENSE DESTINATION .)

# The licences of what others wrote and we ship, from the packages that it comes from.
function(install_license name file)
    if(EXISTS ${file})
        install(FILES ${file} DESTINATION licenses RENAME ${name}.txt ${ARGN})
    else()
        message(STATUS "The licence of ${name} is not on this machine (${file}): do not ship what is built here")
    endif()
endfunction()

set(documents /usr/share/doc)
set(license_texts /usr/share/common-licenses)

# Compiled into the programs of both systems.
install_license(Boost ${PROJECT_SOURCE_DIR}/packaging/Boost-1.0.txt)
if(VCPKG_INSTALLED_DIR)
    install_license(CLI11 ${VCPKG_INSTALLED_DIR}/${VCPKG_TARGET_TRIPLET}/share/cli11/copyright)
else()
    install_license(CLI11 ${documents}/libcli11-dev/copyright)
endif()
if(ZQORB_LIBARCHIVE_ROOT)
    # In kelpctl.exe.
    install_license(libarchive ${ZQORB_LIBARCHIVE_ROOT}/licenses/libarchive.txt)
    install_license(xz ${ZQORB_LIBARCHIVE_ROOT}/licenses/xz-utils.txt)
    install_license(zstd ${ZQORB_LIBARCHIVE_ROOT}/licenses/libzstd.txt)
    install_license(bzip2 ${ZQORB_LIBARCHIVE_ROOT}/licenses/bzip2.txt)
    install_license(zlib ${ZQORB_LIBARCHIVE_ROOT}/licenses/zlib.txt)
endif()
if(MINGW)
    # The runtime DLLs of the compiler, and its start-up code.
    install_license(gcc ${documents}/gcc-mingw-w64-x86-64-posix-runtime/copyright)
    install_license(mingw-w64 ${documents}/mingw-w64-x86-64-dev/copyright)
    install_license(GPL-3 ${license_texts}/GPL-3)
endif()

# The kit that compares a real Windows with what the product takes for granted; its root file system is BusyBox.
if(TARGET verify)
    set(kit COMPONENT verify EXCLUDE_FROM_ALL)
    install(FILES LICENSE DESTINATION . ${kit})
    install_license(Boost ${PROJECT_SOURCE_DIR}/packaging/Boost-1.0.txt ${kit})
    install_license(CLI11 ${documents}/libcli11-dev/copyright ${kit})
    install_license(gcc ${documents}/gcc-mingw-w64-x86-64-posix-runtime/copyright ${kit})
    install_license(mingw-w64 ${documents}/mingw-w64-x86-64-dev/copyright ${kit})
    install_license(BusyBox ${documents}/busybox-static/copyright ${kit})
    install_license(GPL-2 ${license_texts}/GPL-2 ${kit})
    install_license(GPL-3 ${license_texts}/GPL-3 ${kit})
endif()

# The stand-ins hold the C and C++ libraries and, for Wine, parts of it.
set(testkit COMPONENT testkit EXCLUDE_FROM_ALL)
install(FILES LICENSE DESTINATION . ${testkit})
install_license(glibc ${documents}/libc6/copyright ${testkit})
install_license(gcc ${documents}/gcc-12-base/copyright ${testkit})
install_license(GPL-3 ${license_texts}/GPL-3 ${testkit})
install_license(LGPL-2.1 ${license_texts}/LGPL-2.1 ${testkit})
if(MINGW)
    install_license(mingw-w64 ${documents}/mingw-w64-x86-64-dev/copyright ${testkit})
    install_license(Wine ${documents}/libwine/copyright ${testkit})
endif()
