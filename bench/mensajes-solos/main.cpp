#include "extraction/Extraccion.h"

#include <QFile>

/// mensajes-solos UNPACKED RESULT: the extractor of messages alone.
int main(int argc, char **argv)
{
    return argc == 3 && vellora::Extraccion::mensajes(QFile::decodeName(argv[1]), QFile::decodeName(argv[2])) ? 0 : 1;
}
