#include "engine/roll/SitioDeCopias.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSet>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <linux/magic.h>
#include <mutex>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

constexpr auto principioDeSonda = ".vellora-sonda-";

/// Drivers in user space of disks of this computer. Of all others nobody knows what they show.
constexpr std::array discosPorFuse{"fuseblk",    "fuse.ntfs",       "fuse.ntfs-3g", "fuse.lowntfs-3g",
                                   "fuse.exfat", "fuse.exfat-fuse", "fuse.fuse2fs", "fuse.apfs-fuse"};

/// The kind of file system of a mount, as the kernel lists it; empty when it is not in the list.
QByteArray tipoDelMontaje(quint64 montaje)
{
    QFile lista(u"/proc/self/mountinfo"_s);
    if (!lista.open(QIODevice::ReadOnly))
        return {};
    const auto numero = QByteArray::number(montaje) + ' ';
    // Such files have no size: they end where nothing more is read.
    for (auto linea = lista.readLine(); !linea.isEmpty(); linea = lista.readLine()) {
        if (linea.startsWith(numero))
            return linea.sliced(std::max<qsizetype>(linea.indexOf(" - "), 0)).split(' ').value(2);
    }
    return {};
}

/// Why nothing that stands there can be trusted to be a copy; absent when it can.
std::optional<QString> noEsDeFiar(int carpeta, quint64 montaje)
{
    struct statfs como = {};
    if (fstatfs(carpeta, &como) != 0)
        return u"No puedo saber en qué disco está la carpeta de las fotos. No borro nada."_s;
    if (como.f_type == TMPFS_MAGIC || como.f_type == RAMFS_MAGIC)
        return u"La carpeta de las fotos está en la memoria del ordenador y se pierde al apagarlo. No borro nada."_s;
    const auto tipo = tipoDelMontaje(montaje);
    const bool esConocido = std::any_of(discosPorFuse.begin(), discosPorFuse.end(),
                                        [&tipo](const char *conocido) { return tipo == conocido; });
    if (como.f_type == FUSE_SUPER_MAGIC && !esConocido)
        return u"La carpeta de las fotos está en un sistema de archivos que no conozco (%1): podría ser el propio "
               u"iPhone. "
               "No borro nada. Copia las fotos a un disco de este ordenador y vuelve a intentarlo."_s.arg(
                   tipo.isEmpty() ? u"fuse"_s : QString::fromUtf8(tipo));
    return {};
}

/// A file that nobody else has, for as long as it lives.
class Sonda
{
public:
    explicit Sonda(int laCarpeta)
        : carpeta(laCarpeta)
        , nombre_(principioDeSonda + QByteArray::number(QRandomGenerator::system()->generate64(), 16) +
                  QByteArray::number(QRandomGenerator::system()->generate64(), 16))
        , fichero(openat(carpeta, nombre_.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                         S_IRUSR | S_IWUSR))
    {
    }
    ~Sonda()
    {
        if (fichero)
            unlinkat(carpeta, nombre_.constData(), 0);
    }
    Q_DISABLE_COPY_MOVE(Sonda)

    /// It is where everybody who looks at the folder sees it.
    bool puesta()
    {
        return fichero && write(*fichero, nombre_.constData(), static_cast<size_t>(nombre_.size())) == nombre_.size() &&
               fsync(*fichero) == 0 && (fsync(carpeta) == 0 || errno == EINVAL);
    }
    /// Nobody has taken it away meanwhile: only then does its absence elsewhere tell anything.
    bool sigue() const
    {
        struct stat suya = {};
        struct stat vista = {};
        return fstat(*fichero, &suya) == 0 && fstatat(carpeta, nombre_.constData(), &vista, AT_SYMLINK_NOFOLLOW) == 0 &&
               suya.st_ino == vista.st_ino;
    }
    QString nombre() const { return QString::fromLatin1(nombre_); }

private:
    int carpeta;
    QByteArray nombre_;
    Descriptor fichero;
};

/// Folders of the phone that hold one of these files, directly or deeper down: the folder of photos would have to be
/// one of them for a copy in it to be the phone's own file.
QStringList carpetasSobre(const QStringList &rutas)
{
    QSet<QString> carpetas{QString()};
    for (const auto &ruta : rutas) {
        for (auto corte = ruta.lastIndexOf(u'/'); corte > 0; corte = ruta.lastIndexOf(u'/', corte - 1)) {
            const auto carpeta = ruta.first(corte);
            if (carpetas.contains(carpeta))
                break;
            carpetas << carpeta;
        }
    }
    return carpetas.values();
}

/// Why the folder may be one of the phone's; absent when it is none of them.
std::optional<QString> esDelTelefono(int carpeta, Conexiones &conexiones, const QStringList &rutas)
{
    Sonda sonda(carpeta);
    if (!sonda.puesta())
        return u"No puedo escribir en la carpeta de las fotos, así que no borro nada del iPhone."_s;
    const auto donde = carpetasSobre(rutas);
    std::atomic<qsizetype> siguiente = 0;
    std::mutex mutex;
    std::optional<QString> motivo;
    conexiones.repartir(static_cast<size_t>(donde.size()), [&](Afc &afc, size_t) {
        for (auto i = siguiente++; i < donde.size(); i = siguiente++) {
            const auto vista = afc.ficha(donde[i] + u'/' + sonda.nombre());
            const std::lock_guard cerrojo(mutex);
            if (vista)
                motivo =
                    u"La carpeta de las fotos es el propio iPhone, así que ahí no hay ninguna copia. No borro nada. "
                    "Elige una carpeta de este ordenador, copia las fotos y vuelve a intentarlo."_s;
            else if (!afc.faltaba() && !motivo)
                motivo =
                    u"No he podido comprobar que la carpeta de las fotos no sea el propio iPhone. No borro nada. "_s +
                    vista.motivo();
            if (motivo)
                return;
        }
    });
    if (!motivo && !sonda.sigue())
        motivo = u"No he podido comprobar que la carpeta de las fotos no sea el propio iPhone. No borro nada."_s;
    return motivo;
}

/// What earlier runs left behind when they were ended; another program's of this moment stays.
void limpiarSondas(const QString &carpeta)
{
    constexpr qint64 reciente = 3600;
    const auto ahora = QDateTime::currentDateTimeUtc();
    const auto halladas =
        QDir(carpeta).entryInfoList({QString::fromLatin1(principioDeSonda) + u'*'}, QDir::Files | QDir::Hidden);
    for (const auto &una : halladas) {
        if (una.lastModified().secsTo(ahora) > reciente)
            QFile::remove(una.filePath());
    }
}

} // namespace

std::optional<quint64> montajeDe(int descriptor)
{
    struct statx como = {};
    const bool seSabe =
        statx(descriptor, "", AT_EMPTY_PATH, STATX_MNT_ID, &como) == 0 && (como.stx_mask & STATX_MNT_ID) != 0;
    return seSabe ? std::optional<quint64>(como.stx_mnt_id) : std::nullopt;
}

Resultado<SitioDeCopias> SitioDeCopias::abrir(const QString &carpeta, Conexiones &conexiones, const QStringList &rutas)
{
    const auto no = [](const QString &motivo) {
        return Resultado<SitioDeCopias>::fallo(motivo);
    };
    const Descriptor abierta(open(QFile::encodeName(carpeta).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!abierta)
        return no(u"La carpeta de las fotos no está en su sitio. No borro nada. ¿Falta conectar su disco?"_s);
    const auto suMontaje = montajeDe(*abierta);
    if (!suMontaje)
        return no(u"No puedo saber en qué disco está la carpeta de las fotos. No borro nada."_s);
    if (const auto motivo = noEsDeFiar(*abierta, *suMontaje))
        return no(*motivo);
    limpiarSondas(carpeta);
    if (const auto motivo = esDelTelefono(*abierta, conexiones, rutas))
        return no(*motivo);
    return SitioDeCopias(*suMontaje);
}

} // namespace vellora::motor
