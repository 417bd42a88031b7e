# What makes mistakes in the library harder to exploit: for its release builds, not for those with
# sanitizers, which find the mistakes themselves. tests/install/hardening.sh looks at the outcome.
add_library(olvex_hardening INTERFACE)
if(NOT OLVEX_SANITIZE)
    include(CheckCXXCompilerFlag)
    check_cxx_compiler_flag(-fcf-protection OLVEX_HAS_CF_PROTECTION)
    target_compile_options(olvex_hardening INTERFACE -fstack-protector-strong
        $<$<BOOL:${OLVEX_HAS_CF_PROTECTION}>:-fcf-protection>)
    target_compile_options(olvex_hardening INTERFACE # needs optimisation
        $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
endif()
target_link_options(olvex_hardening INTERFACE -Wl,-z,relro,-z,now -Wl,-z,noexecstack)
