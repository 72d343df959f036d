#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <algorithm>

namespace vellora
{

/// One file of the phone's roll.
struct FotoDelCarrete {
    QString ruta; ///< on the phone; its identity
    QString carpeta;
    QString nombre;
    qint64 bytes = 0;
    qint64 fecha = 0; ///< seconds since 1970
    QString tipo;     ///< "foto", "video", "retoque" or "ajustes"
    QString elemento; ///< the same for all files of one photo
    bool copiado = false;
    QString estado = QStringLiteral("visible"); ///< or "oculta", "papelera"
    bool soloSeCopia = false;                   ///< kept outside of the roll: never deleted

    /// Of an element of the engine's notice "carrete"; without a state it is visible.
    static FotoDelCarrete deJson(const QJsonObject &objeto);

    bool esVideo() const { return tipo == u"video"; }
    bool esRetoque() const { return tipo == u"retoque"; }
    bool esAjustes() const { return tipo == u"ajustes"; }
};

/// What a person sees as one photo: a Live Photo with its video, a photo with its edit.
struct ElementoGaleria {
    QString id;
    FotoDelCarrete principal;       ///< the one to show: the edit where there is one
    QList<FotoDelCarrete> ficheros; ///< the principal one included

    bool esVideo() const { return principal.esVideo(); }
    /// A photo with a video of its own.
    bool esVivo() const;
    bool retocada() const;
    /// Each of its files is on the computer.
    bool copiado() const;
    /// It cannot be deleted from here.
    bool soloSeCopia() const { return principal.soloSeCopia; }
    bool enPapelera() const { return principal.estado == u"papelera"; }
    bool oculta() const { return principal.estado == u"oculta"; }
    qint64 bytes() const;
    QStringList rutas() const;
    /// Name, size, day and what it is, in words.
    QString descripcion() const;
};

/// Puts the files of each photo together, in the order of their first ones. Any thread.
QList<ElementoGaleria> agrupar(const QList<FotoDelCarrete> &fotos);

} // namespace vellora
