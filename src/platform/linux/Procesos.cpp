#include "platform/Procesos.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <functional>
#include <sys/prctl.h>
#include <sys/resource.h>
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
    QFile mio(u"/proc/self/comm"_s);
    const auto nombre = mio.open(QIODevice::ReadOnly) ? mio.readAll() : QByteArray();
    return algunOtro([propio = QCoreApplication::applicationFilePath(), nombre](const QString &carpeta) {
        const auto suyo = QFile::symLinkTarget(carpeta + u"/exe"_s);
        if (!suyo.isEmpty())
            return suyo == propio;
        // One that holds secrets shows its name only.
        QFile comm(carpeta + u"/comm"_s);
        QFile estado(carpeta + u"/status"_s);
        if (!comm.open(QIODevice::ReadOnly) || !estado.open(QIODevice::ReadOnly) || comm.readAll() != nombre)
            return false;
        const auto ficha = estado.readAll();
        return ficha.contains("\nUid:\t" + QByteArray::number(getuid()) + '\t') && !ficha.contains("\nState:\tZ");
    });
}

void sinVolcados()
{
    const rlimit nada{0, 0};
    setrlimit(RLIMIT_CORE, &nada);
}

void guardarSecretos()
{
    sinVolcados();
    prctl(PR_SET_DUMPABLE, 0);
}

} // namespace vellora
