# Writes the header with the build date: "cmake -D SOURCE=FOLDER -D OUTPUT=FILE -P build_date.cmake".
#
# The date is that of SOURCE_DATE_EPOCH when that is set, that of the commit when the sources are exactly a commit, and
# today's otherwise; so two builds of one commit give the same date, on any day.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
    execute_process(COMMAND git -C ${SOURCE} status --porcelain --untracked-files=no
        OUTPUT_VARIABLE changes ERROR_QUIET RESULT_VARIABLE failed)
    execute_process(COMMAND git -C ${SOURCE} log -1 --format=%ct
        OUTPUT_VARIABLE commit_time ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT failed AND NOT changes AND commit_time)
        set(ENV{SOURCE_DATE_EPOCH} ${commit_time})
    endif()
endif()
string(TIMESTAMP date "%b %d %Y" UTC)
# As the compiler's own date: a blank in the place of a leading zero.
string(REPLACE " 0" "  " date ${date})
string(CONFIGURE [[// The date of the build, as libzqorb_lvm_build_date gives it.
#pragma once

inline constexpr char buildDate[] = "@date@";
]] header @ONLY)
file(CONFIGURE OUTPUT ${OUTPUT} CONTENT "${header}" @ONLY)
