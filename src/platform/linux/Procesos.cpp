#include "platform/Procesos.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <functional>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

bool algunOtro(const std::function<bool(const QString &carpeta)> &cumple)
{
    const QDir procesos(u"/proc"_s);
    const auto propio = QString::number(QCoreApplication::applicationPid());
    const auto entradas = procesos.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return std::any_of(entradas.cbegin(), entradas.cend(), [&](const QString &entrada) {
        return entrada.front().isDigit() && entrada != propio && cumple(procesos.filePath(entrada));
    });
}

} // namespace

bool hayProcesoCon(const QString &palabra)
{
    return algunOtro([buscada = palabra.toUtf8()](const QString &carpeta) {
        QFile orden(carpeta + u"/cmdline"_s);
        return orden.open(QIODevice::ReadOnly) && orden.readAll().contains(buscada);
    });
}

double segundosDeProcesador(qint64 proceso)
{
    QFile estado(u"/proc/%1/stat"_s.arg(proceso));
    if (!estado.open(QIODevice::ReadOnly))
        return 0;
    // After the name, which may hold anything: the times of user and system are the 12th and 13th.
    const auto campos = estado.readAll().split(')').last().trimmed().split(' ');
    const auto marcas = campos.value(11).toDouble() + campos.value(12).toDouble();
    return marcas / static_cast<double>(sysconf(_SC_CLK_TCK));
}

bool hayOtroProcesoDelPrograma()
{
    return algunOtro([propio = QCoreApplication::applicationFilePath()](const QString &carpeta) {
        return QFile::symLinkTarget(carpeta + u"/exe"_s) == propio;
    });
}

} // namespace vellora
