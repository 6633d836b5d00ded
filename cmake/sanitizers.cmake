# twinstep_sanitizers: AddressSanitizer and UBSan, when asked for. PUBLIC on the lowest library, so that all
# that links it is instrumented alike.
option(TWINSTEP_SANITIZE "Build with AddressSanitizer and UBSan" OFF)

add_library(twinstep_sanitizers INTERFACE)
if(TWINSTEP_SANITIZE)
    set(sanitizer_flags -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(twinstep_sanitizers INTERFACE ${sanitizer_flags})
    target_link_options(twinstep_sanitizers INTERFACE ${sanitizer_flags})
endif()
