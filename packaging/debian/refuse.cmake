# Run by CPack in a build whose folders aren't those of a package.
message(FATAL_ERROR "Packages are made by: cmake --preset package && cmake --build --preset package --target package")
