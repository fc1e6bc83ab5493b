// A program that does nothing: its precompiled headers are those of all test programs.
int main() {}
