#include "engine/roll/ListaDeBorradas.h"

#include "core/EscritorDeTexto.h"
#include "engine/roll/FicheroLocal.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

QByteArray enTexto(const ListaDeBorradas::Linea &linea)
{
    QByteArray texto = QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH:mm:ss"_s).toLatin1() + '\t';
    ponerTextoLimpio(texto, linea.fichero->ruta.toUtf8());
    texto += '\t' + QByteArray::number(linea.fichero->ficha.tamano) + '\t';
    ponerTextoLimpio(texto, linea.copia.relativa);
    return texto + '\t' + linea.copia.huella.toHex();
}

} // namespace

Resultado<ListaDeBorradas> ListaDeBorradas::abrir(const QString &carpeta)
{
    const auto no = [] {
        return Resultado<ListaDeBorradas>::fallo(
            u"No puedo escribir en la carpeta de las fotos, así que no borro nada del iPhone."_s);
    };
    const Descriptor donde(open(QFile::encodeName(carpeta).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    Descriptor fichero(openat(*donde, "Borradas del iPhone.txt", O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_CLOEXEC,
                              S_IRUSR | S_IWUSR));
    return fichero && (fsync(*donde) == 0 || errno == EINVAL) ? Resultado(ListaDeBorradas(std::move(fichero))) : no();
}

bool ListaDeBorradas::escribir(const QByteArray &texto)
{
    const auto antes = lseek(*fichero, 0, SEEK_END);
    if (motor::escribir(*fichero, texto) && fdatasync(*fichero) == 0)
        return true;
    // Part of a line would tell of a file that never went.
    if (antes >= 0 && ftruncate(*fichero, antes) == 0)
        fdatasync(*fichero);
    return false;
}

bool ListaDeBorradas::apuntar(const std::vector<Linea> &lineas)
{
    QByteArray texto;
    for (const auto &linea : lineas)
        texto += enTexto(linea) + '\n';
    return escribir(texto);
}

void ListaDeBorradas::apuntarQueSigue(const Linea &linea)
{
    escribir(enTexto(linea) + "\tNO SE BORRÓ\n");
}

} // namespace vellora::motor
