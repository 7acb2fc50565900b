// The Central Library index is the one the library tool keeps; its reader
// and writer are built into this tool as well.
#include "tools/libforge.exe/library_index.cpp"
