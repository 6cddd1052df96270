# Removes the files of the last installation, whose list CMake leaves in the build folder.
file(STRINGS install_manifest.txt files)
foreach(file IN LISTS files)
  message("-- Removing: $ENV{DESTDIR}${file}")
  file(REMOVE "$ENV{DESTDIR}${file}")
endforeach()
