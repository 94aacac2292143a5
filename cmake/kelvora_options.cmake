# SPDX-License-Identifier: MIT
# What every target of the project is compiled with.
add_library(kelvora_options INTERFACE)
target_compile_features(kelvora_options INTERFACE cxx_std_17)
target_compile_definitions(kelvora_options INTERFACE QT_NO_CAST_TO_ASCII QT_DEPRECATED_WARNINGS)
# An index error must stop the program with its expression instead of running on with wrong numbers,
# so assertions stay on in every build type.
target_compile_options(kelvora_options INTERFACE -Wall -Wextra -Wshadow -Wconversion -UNDEBUG)
if(KELVORA_WERROR)
  target_compile_options(kelvora_options INTERFACE -Werror)
endif()
if(KELVORA_SANITIZE)
  target_compile_options(kelvora_options INTERFACE -fsanitize=${KELVORA_SANITIZE}
                                                   -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kelvora_options INTERFACE -fsanitize=${KELVORA_SANITIZE})
endif()
if(KELVORA_FUZZ AND CMAKE_CXX_COMPILER_ID MATCHES Clang)
  target_compile_options(kelvora_options INTERFACE -fsanitize=fuzzer-no-link) # coverage guides the fuzzer
endif()
