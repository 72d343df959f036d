#include "extraction/Extraccion.h"

#include <QFile>

/// todos-los-extractores UNPACKED RESULT: what the program runs in its own thread, as a process that can be killed.
int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    return vellora::Extraccion::todo(QFile::decodeName(argv[1]), QFile::decodeName(argv[2])).isEmpty() ? 1 : 0;
}
