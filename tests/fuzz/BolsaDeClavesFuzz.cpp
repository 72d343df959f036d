#include "engine/backup/BolsaDeClaves.h"

#include <QByteArray>

using namespace vellora::motor;

/// Any bytes as the key bag of a backup. The derivation itself is left out: a bag may ask for twenty million rounds.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t largo)
{
    const auto bolsa = BolsaDeClaves::leer(
        QByteArray::fromRawData(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(largo)));
    if (!bolsa && bolsa.motivo().isEmpty())
        __builtin_trap();
    return 0;
}
