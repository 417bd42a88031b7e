# What an install brings: library, headers, command, CMake package and pkg-config file.
