# SPDX-License-Identifier: MIT
# The one place for compiler flags. Every target of the project links mfcurves_flags.
add_library(mfcurves_flags INTERFACE)
target_compile_features(mfcurves_flags INTERFACE cxx_std_20)
target_compile_options(mfcurves_flags INTERFACE
  -ffp-contract=off  # one rounding per operation, so that compilers agree to the bit
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
  $<$<BOOL:${MFCURVES_WERROR}>:-Werror>)
if(MFCURVES_SANITIZE)
  target_compile_options(mfcurves_flags INTERFACE
    -fsanitize=${MFCURVES_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(mfcurves_flags INTERFACE -fsanitize=${MFCURVES_SANITIZE})
endif()
if(MFCURVES_FUZZ)
  # Coverage feedback in the library; each fuzz target adds the fuzzer's main.
  target_compile_options(mfcurves_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(CMAKE_EXE_LINKER_FLAGS MATCHES "mold")
  # If all thread-local data is zero, mold 1.10 protects memory that does not
  # exist, and the program does not start.
  target_link_options(mfcurves_flags INTERFACE -Wl,-z,norelro)
endif()

# With MFCURVES_TIDY, a finding of clang-tidy in a source of the target stops the build.
# In a unity build the sources are included, which is a finding of its own.
function(mfcurves_tidy target)
  if(MFCURVES_TIDY)
    set(tidy clang-tidy --quiet)
    if(CMAKE_UNITY_BUILD)
      list(APPEND tidy --checks=-bugprone-suspicious-include)
    endif()
    set_target_properties(${target} PROPERTIES CXX_CLANG_TIDY "${tidy}")
  endif()
endfunction()
