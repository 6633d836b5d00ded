# twinstep_warnings: what every target of ours is compiled with.
option(TWINSTEP_WERROR "Treat warnings as errors" OFF)

add_library(twinstep_warnings INTERFACE)
target_compile_options(twinstep_warnings INTERFACE -Wall -Wextra -Wshadow -Wconversion -Wsign-conversion
    $<$<BOOL:${TWINSTEP_WERROR}>:-Werror>
    # GCC 12 warns wrongly where a text literal stands before a string and a plus (GCC bug 105651).
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
