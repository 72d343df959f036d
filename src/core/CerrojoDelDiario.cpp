#include "core/CerrojoDelDiario.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <fcntl.h>
#include <sys/stat.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr off_t deQuienEscribe = 0;

/// The byte of a job: its identifier is random, so that two hardly share one.
off_t byteDe(const QUuid &trabajo)
{
    constexpr quint64 positivos = 0x3FFF'FFFF'FFFF'FFFF;
    return static_cast<off_t>((qFromBigEndian<quint64>(trabajo.toRfc4122().constData()) & positivos) | 1U);
}

bool pedir(int descriptor, int orden, short clase, off_t byte)
{
    struct flock cual = {};
    cual.l_type = clase;
    cual.l_whence = SEEK_SET;
    cual.l_start = byte;
    cual.l_len = 1;
    // The lock belongs to the open file, not to the process: it needs no care about other descriptors.
    const bool hecho = fcntl(descriptor, orden, &cual) == 0;
    return orden == F_OFD_GETLK ? hecho && cual.l_type != F_UNLCK : hecho;
}

} // namespace

CerrojoDelDiario::CerrojoDelDiario(const QString &elFichero)
    : ruta(QFileInfo(elFichero).path() + u"/."_s + QFileInfo(elFichero).fileName() + u".cerrojo"_s)
{
}

bool CerrojoDelDiario::abrir(bool aunqueFalte)
{
    if (fichero)
        return true;
    if (aunqueFalte)
        QDir().mkpath(QFileInfo(ruta).path());
    const int como = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | (aunqueFalte ? O_CREAT : 0);
    fichero = Descriptor(open(QFile::encodeName(ruta).constData(), como, S_IRUSR | S_IWUSR));
    return bool(fichero);
}

bool CerrojoDelDiario::tomarTurno()
{
    if (!abrir(true))
        return false;
    constexpr int veces = 100;
    constexpr auto entreDos = std::chrono::milliseconds(10);
    for (int i = 0; i < veces; ++i) {
        if (pedir(*fichero, F_OFD_SETLK, F_WRLCK, deQuienEscribe))
            return true;
        if (errno != EAGAIN && errno != EACCES)
            return true; // a file system without locks: nothing better can be had there
        std::this_thread::sleep_for(entreDos);
    }
    return false;
}

void CerrojoDelDiario::dejarTurno()
{
    if (fichero)
        pedir(*fichero, F_OFD_SETLK, F_UNLCK, deQuienEscribe);
}

void CerrojoDelDiario::correr(const QUuid &trabajo)
{
    if (abrir(true))
        pedir(*fichero, F_OFD_SETLK, F_WRLCK, byteDe(trabajo));
}

void CerrojoDelDiario::parar(const QUuid &trabajo)
{
    if (fichero)
        pedir(*fichero, F_OFD_SETLK, F_UNLCK, byteDe(trabajo));
}

bool CerrojoDelDiario::correEnOtro(const QUuid &trabajo)
{
    return abrir(false) && pedir(*fichero, F_OFD_GETLK, F_WRLCK, byteDe(trabajo));
}

} // namespace vellora
