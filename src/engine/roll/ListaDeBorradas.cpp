#include "engine/roll/ListaDeBorradas.h"

#include "core/EscritorDeTexto.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

Resultado<ListaDeBorradas> ListaDeBorradas::abrir(const QString &carpeta)
{
    const auto nombre = QFile::encodeName(carpeta + u"/Borradas del iPhone.txt"_s);
    Descriptor fichero(
        open(nombre.constData(), O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!fichero)
        return Resultado<ListaDeBorradas>::fallo(
            u"No puedo escribir en la carpeta de las fotos, así que no borro nada del iPhone."_s);
    return ListaDeBorradas(std::move(fichero));
}

bool ListaDeBorradas::apuntar(const FicheroDelCarrete &fichero_, const QByteArray &copia, const QByteArray &huella)
{
    QByteArray linea = QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH:mm:ss"_s).toLatin1() + '\t';
    ponerTextoLimpio(linea, fichero_.ruta.toUtf8());
    linea += '\t' + QByteArray::number(fichero_.ficha.tamano) + '\t';
    ponerTextoLimpio(linea, copia);
    linea += '\t' + huella.toHex() + '\n';
    return write(*fichero, linea.constData(), static_cast<size_t>(linea.size())) == linea.size();
}

} // namespace vellora::motor
