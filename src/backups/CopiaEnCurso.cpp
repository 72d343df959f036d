#include "backups/CopiaEnCurso.h"

#include "backups/CarpetaDeCopias.h"
#include "backups/Comprobante.h"
#include "backups/CopiasAnteriores.h"
#include "backups/ExplicarFallo.h"
#include "core/CarpetaPrivada.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr auto enObras = ".vellora-copia-en-curso";
// A run that was cancelled clears up behind itself for a while.
constexpr int segundosDeEspera = 30;

QString rutaDeObras(const QString &copias)
{
    return copias + u'/' + QString::fromLatin1(enObras);
}

/// The place of that name is free, and is taken. Some file systems know no renaming that looks first.
bool tomarSitio(int obras, int carpeta, const QByteArray &udid)
{
    if (renameat2(obras, udid.constData(), carpeta, udid.constData(), RENAME_NOREPLACE) == 0)
        return true;
    struct stat ficha = {};
    return errno == EINVAL && fstatat(carpeta, udid.constData(), &ficha, AT_SYMLINK_NOFOLLOW) != 0 &&
           renameat(obras, udid.constData(), carpeta, udid.constData()) == 0;
}

/// A backup in the works that carries its note takes its place. The steps are renamings only, and each of them may be
/// the last one: what is found half done is done to its end from here.
bool ponerEnSuSitio(int carpeta, const QString &copias, const QString &udid)
{
    const auto obras = CarpetaDeCopias::dentro(carpeta, enObras);
    if (!obras || !CopiasAnteriores::retirar(carpeta, copias, udid) ||
        !tomarSitio(*obras, carpeta, QFile::encodeName(udid)))
        return false;
    fsync(*obras);
    fsync(carpeta);
    return true;
}

/// Beside a backup that nobody could look into, at least one earlier one stays, and the last that is known to be whole.
void podar(const QString &copias, const QString &udid, int guardadas)
{
    using Veredicto = ComprobacionDeCopia::Veredicto;
    const auto veredicto = Comprobante::leer(copias + u'/' + udid);
    if (veredicto == Veredicto::Entera)
        CopiasAnteriores::podar(copias, udid, guardadas, false);
    else if (veredicto == Veredicto::SinComprobar)
        CopiasAnteriores::podar(copias, udid, std::max(guardadas, 1), true);
}

/// The folder is held by the caller.
void recuperarTomada(int carpeta, const QString &copias, int guardadas)
{
    const auto ruta = rutaDeObras(copias);
    const auto nombres = QDir(ruta).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const auto &udid : nombres) {
        if (!Comprobante::leer(ruta + u'/' + udid))
            continue;
        if (!ponerEnSuSitio(carpeta, copias, udid))
            return; // whole: it waits
        podar(copias, udid, guardadas);
    }
    CarpetaPrivada::quitar(carpeta, enObras);
}

QString porQueNo()
{
    return errno == ENOSPC || errno == EDQUOT ? sentenciaDeDiscoLleno()
                                              : u"No puedo escribir en la carpeta de las copias."_s;
}

} // namespace

Resultado<CopiaEnCurso> CopiaEnCurso::abrir(const QString &copias, const QString &udid, Modo modo, int guardadas)
{
    using Fallo = Resultado<CopiaEnCurso>;
    QDir().mkpath(copias);
    if (!QFileInfo(copias).isDir())
        return Fallo::fallo(porQueNo());
    CopiaEnCurso nueva(copias, udid, Modo::Completa, guardadas, CarpetaDeCopias::tomar(copias, segundosDeEspera));
    if (!nueva.cerrojo)
        return Fallo::fallo(u"Hay otra copia haciéndose en la misma carpeta. Espera a que acabe."_s);
    recuperarTomada(*nueva.cerrojo, copias, guardadas);
    const auto nombre = QFile::encodeName(udid);
    if (mkdirat(*nueva.cerrojo, enObras, S_IRWXU) != 0) {
        nueva.esperando = errno == EEXIST; // what could not be cleared away is not ours to use
        return Fallo::fallo(porQueNo());
    }
    const auto vieja = CarpetaDeCopias::dentro(*nueva.cerrojo, nombre);
    const bool hayBuena = vieja && Comprobante::leer(copias + u'/' + udid) == ComprobacionDeCopia::Veredicto::Entera;
    if (modo == Modo::SobreLaAnterior && hayBuena) {
        const auto obras = CarpetaDeCopias::dentro(*nueva.cerrojo, enObras);
        if (CarpetaDeCopias::hacerGemela(*vieja, *obras, nombre, Comprobante::fichero().toUtf8()))
            nueva.modo_ = Modo::SobreLaAnterior;
        else
            CarpetaPrivada::quitar(*obras, nombre);
    }
    return nueva;
}

CopiaEnCurso::~CopiaEnCurso()
{
    if (cerrojo && !esperando)
        CarpetaPrivada::quitar(*cerrojo, enObras);
}

QString CopiaEnCurso::destino() const
{
    return rutaDeObras(copias);
}

std::optional<qint64> CopiaEnCurso::bytesDeLaAnterior() const
{
    const auto vieja = copias + u'/' + udid;
    return QFileInfo::exists(vieja) ? std::optional(CarpetaDeCopias::bytesEnDisco({vieja})) : std::nullopt;
}

std::optional<qint64> CopiaEnCurso::libres() const
{
    struct statvfs estado = {};
    if (fstatvfs(*cerrojo, &estado) != 0)
        return {};
    return static_cast<qint64>(estado.f_bavail) * static_cast<qint64>(estado.f_frsize);
}

bool CopiaEnCurso::colocar(ComprobacionDeCopia::Veredicto veredicto)
{
    // The note comes when all that it speaks of is on the disk, and then everything waits for the note.
    if (syncfs(*cerrojo) != 0 || !Comprobante::escribir(carpeta(), veredicto) || syncfs(*cerrojo) != 0)
        return false;
    esperando = true;
    if (!ponerEnSuSitio(*cerrojo, copias, udid))
        return false;
    esperando = false;
    podar(copias, udid, guardadas);
    return true;
}

void CopiaEnCurso::recuperar(const QString &copias, int guardadas)
{
    const bool hayObras = QFileInfo::exists(rutaDeObras(copias));
    if (!hayObras && !QFileInfo::exists(copias + u'/' + CopiasAnteriores::nombreDeLaCarpeta()))
        return;
    const auto cerrojo = CarpetaDeCopias::tomar(copias, 0);
    if (!cerrojo)
        return;
    if (hayObras)
        recuperarTomada(*cerrojo, copias, guardadas);
    CopiasAnteriores::limpiar(copias);
}

} // namespace vellora
