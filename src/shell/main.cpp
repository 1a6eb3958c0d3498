// Program entry. The real start-up (command line, frame window, batch runs)
// lands here as it is built; for now it tells how the program is called.

#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    if (argc > 1 && std::strcmp(argv[1], "--version") == 0) {
        std::printf("tallyvane %s\n", TALLYVANE_VERSION);
        return 0;
    }
    std::printf("Usage: tallyvane [ORIGINAL MODIFIED] [-M path] [-S path] [options]\n");
    return 0;
}
