#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace simulado
{

/// One thing that a backup holds.
struct EntradaDeCopia {
    enum Tipo { Fichero = 1, Carpeta = 2, Enlace = 4 }; ///< the numbers of Manifest.db's "flags"

    QString dominio;
    QString ruta;      ///< inside the domain, without a leading slash; empty for the domain's own folder
    QByteArray origen; ///< where its bytes are on this disk
    QByteArray id;     ///< SHA-1 of "domain-path", 40 lower-case hexadecimal digits
    Tipo tipo = Fichero;
    qint64 tamano = 0; ///< bytes; zero for folders
    qint64 fecha = 0;  ///< last change, Unix seconds
    quint64 inodo = 0;
    quint32 modo = 0; ///< permissions and kind, as stat tells them
    int clase = 0;    ///< protection class; zero for folders
    QByteArray clave; ///< class and wrapped key of an encrypted file, empty otherwise

    /// Name in the copy: "xx/xxxx…".
    QString nombreEnCopia() const;
};

/// Everything that goes into a backup of the phone in that folder, in an order that does not change between runs.
QList<EntradaDeCopia> inventariar(const QString &carpetaDelTelefono);

} // namespace simulado
