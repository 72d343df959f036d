#include "core/Plist.h"
#include "engine/backup/BolsaDeClaves.h"

#include <QElapsedTimer>
#include <QFile>

#include <cstdio>

/// clave-sola MANIFEST.PLIST PASSWORD: the seconds that opening the key bag takes.
int main(int argc, char **argv)
{
    using vellora::motor::BolsaDeClaves;
    const auto manifiesto = argc == 3 ? vellora::Plist::leer(QFile::decodeName(argv[1])) : std::nullopt;
    if (!manifiesto)
        return 2;
    const auto bolsa = BolsaDeClaves::leer(manifiesto->raiz()["BackupKeyBag"].datos().value_or(QByteArray()));
    QElapsedTimer reloj;
    reloj.start();
    if (!bolsa || !bolsa->abrir(QString::fromLocal8Bit(argv[2])))
        return 1;
    std::printf("%.4f\n", static_cast<double>(reloj.nsecsElapsed()) / 1e9);
    return 0;
}
