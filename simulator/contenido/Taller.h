#pragma once

#include "contenido/Contexto.h"

#include <QImage>
#include <QString>
#include <QStringList>

namespace simulado
{

/// Where pictures, videos and recordings are made: with heif-enc, ffmpeg and sample photographs if the computer has
/// them, otherwise drawn and written by hand. What is missing is said once on stderr; the contents stay usable without
/// it.
class Taller
{
public:
    explicit Taller(Contexto &c);

    /// The picture of that number, filling the size: a photograph if there is one, drawn if not.
    /// `variante` moves the frame by a hand's tremble.
    [[nodiscard]] QImage imagen(int motivo, int ancho, int alto, int variante = 0) const;
    /// Turns a JPEG file into HEIC, metadata included. False without the encoder.
    [[nodiscard]] bool heic(const QString &jpeg, const QString &destino, int calidad) const;
    /// A short video that moves over one picture.
    void video(const QString &destino, const Foto &foto, const QImage &imagen) const;
    void grabacion(const QString &destino, double segundos, int hercios) const;

    [[nodiscard]] bool tieneHeic() const { return !m_heif.isEmpty(); }
    [[nodiscard]] qsizetype fotos() const { return m_fotos.size(); }

private:
    [[nodiscard]] static bool corre(const QString &programa, const QStringList &argumentos);

    Contexto &c;
    QString m_ffmpeg;
    QString m_heif;
    QStringList m_fotos;
};

} // namespace simulado
