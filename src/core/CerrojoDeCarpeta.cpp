#include "core/CerrojoDeCarpeta.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace vellora
{

CerrojoDeCarpeta CerrojoDeCarpeta::tomar(const QString &carpeta)
{
    QDir().mkpath(QFileInfo(carpeta).path());
    mkdir(QFile::encodeName(carpeta).constData(), S_IRWXU);
    const auto nombre = QFile::encodeName(carpeta + u"/.vellora-cerrojo"_s);
    // To write: a lock that goes over the network wants a file that can be written.
    Descriptor fichero(open(nombre.constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!fichero)
        return {Estado::Negado, Descriptor()};
    if (flock(*fichero, LOCK_EX | LOCK_NB) == 0)
        return {Estado::Tomado, std::move(fichero)};
    return {errno == EWOULDBLOCK || errno == EACCES ? Estado::Ocupado : Estado::SinCerrojos, Descriptor()};
}

std::optional<QString> CerrojoDeCarpeta::impedimento() const
{
    if (estado_ == Estado::Ocupado)
        return u"Otro programa está escribiendo ahora en la carpeta de las fotos, en este ordenador o en otro que la "
               "comparte. Espera a que acabe y vuelve a intentarlo."_s;
    if (estado_ == Estado::Negado)
        return u"No puedo escribir en la carpeta de las fotos. Mira que el disco siga conectado y que tenga sitio."_s;
    return {};
}

std::optional<QString> CerrojoDeCarpeta::aviso() const
{
    if (estado_ != Estado::SinCerrojos)
        return {};
    return u"El disco de esta carpeta no permite reservarla: no la uses a la vez desde otro ordenador."_s;
}

} // namespace vellora
