// The shared library is made of the component's objects alone; InitComponent
// (vlt2hrw_main.cpp) is its only exported symbol.
