#include "contenido/Taller.h"

#include "contenido/Cinta.h"
#include "contenido/FotosDeMuestra.h"
#include "contenido/Pintor.h"

#include <QDateTime>
#include <QFile>
#include <QImageReader>
#include <QProcess>
#include <QStandardPaths>

#include <cstdio>
#include <mutex>

using namespace Qt::StringLiterals;

namespace simulado
{

static void avisa(const char *que)
{
    static QStringList dichos;
    static std::mutex cerrojo;
    const std::lock_guard candado(cerrojo);
    if (!dichos.contains(QLatin1String(que))) {
        dichos << QLatin1String(que);
        std::fprintf(stderr, "phone contents: %s\n", que);
    }
}

Taller::Taller(Contexto &contexto) : c(contexto)
{
    if (!c.conHerramientas())
        return;
    m_ffmpeg = QStandardPaths::findExecutable(u"ffmpeg"_s);
    m_heif = QStandardPaths::findExecutable(u"heif-enc"_s);
    m_fotos = fotosDeMuestra();
    if (m_ffmpeg.isEmpty())
        avisa("ffmpeg is missing: videos are Motion JPEG and voice memos uncompressed");
    if (m_heif.isEmpty())
        avisa("heif-enc is missing: the roll holds JPEG where a phone has HEIC");
    if (m_fotos.isEmpty())
        avisa("no sample photographs found (see docs/fotos-de-muestra.md): pictures are drawn");
}

bool Taller::corre(const QString &programa, const QStringList &argumentos)
{
    QProcess proceso;
    proceso.setStandardOutputFile(QProcess::nullDevice());
    proceso.setStandardErrorFile(QProcess::nullDevice());
    proceso.start(programa, argumentos, QIODevice::NotOpen);
    return proceso.waitForFinished(120'000) && proceso.exitStatus() == QProcess::NormalExit && proceso.exitCode() == 0;
}

QImage Taller::imagen(int motivo, int ancho, int alto, int variante) const
{
    if (m_fotos.isEmpty())
        return pinta(motivo, ancho + 48, alto + 48).copy(variante * 12, variante * 7, ancho, alto);
    // The same photograph is cut at another place each time that it comes round.
    const auto vuelta = motivo / m_fotos.size();
    QImageReader lector(m_fotos[motivo % m_fotos.size()]);
    auto tamano = lector.size().scaled(ancho + 48, alto + 48, Qt::KeepAspectRatioByExpanding);
    if (vuelta > 0)
        tamano = tamano * (1.0 + 0.18 * static_cast<double>(vuelta));
    lector.setScaledSize(tamano);
    lector.setQuality(60);
    auto leida = lector.read();
    if (leida.isNull())
        return pinta(motivo, ancho, alto);
    const int x = (leida.width() - ancho - 48) * static_cast<int>((vuelta * 37 + 50) % 100) / 100;
    const int y = (leida.height() - alto - 48) * static_cast<int>((vuelta * 61 + 50) % 100) / 100;
    return leida.copy(x + variante * 12, y + variante * 7, ancho, alto).convertToFormat(QImage::Format_RGB32);
}

bool Taller::heic(const QString &jpeg, const QString &destino, int calidad) const
{
    return !m_heif.isEmpty() && corre(m_heif, {u"-q"_s, QString::number(calidad), u"-p"_s, u"preset=ultrafast"_s,
                                               u"-t"_s, u"320"_s, u"-o"_s, destino, jpeg});
}

void Taller::video(const QString &destino, const Foto &foto, const QImage &imagen) const
{
    const auto grande = destino + u".jpg"_s;
    if (!m_ffmpeg.isEmpty() && imagen.save(grande, "JPG", 90)) {
        // The frame slides over a larger picture; without fixed threads and flags two runs may differ.
        auto filtro = u"scale=%1:%2,crop=%3:%4:x='(iw-ow)*t/%5':y='(ih-oh)/2'"_s.arg(foto.ancho * 5 / 4 / 2 * 2)
                          .arg(foto.alto * 5 / 4 / 2 * 2)
                          .arg(foto.ancho)
                          .arg(foto.alto)
                          .arg(foto.duracion);
        // The roll's one large video gets a sensor's noise, which is what makes a phone's videos weigh.
        if (foto.ancho >= 1920)
            filtro += u",noise=all_seed=7:alls=8:allf=t"_s;
        const auto fecha = QDateTime::fromSecsSinceEpoch(foto.momento, Qt::UTC).toString(Qt::ISODate);
        QStringList argumentos{
            u"-nostdin"_s,   u"-y"_s,
            u"-loop"_s,      u"1"_s,
            u"-framerate"_s, u"30"_s,
            u"-i"_s,         grande,
            u"-f"_s,         u"lavfi"_s,
            u"-i"_s,         u"sine=frequency=%1:sample_rate=44100"_s.arg(200 + foto.motivo * 7),
            u"-t"_s,         QString::number(foto.duracion),
            u"-vf"_s,        filtro,
            u"-c:v"_s,       u"libx264"_s,
            u"-preset"_s,    u"ultrafast"_s,
            u"-crf"_s,       foto.ancho >= 1920 ? u"25"_s : foto.clase == Foto::Video ? u"20"_s : u"28"_s,
            u"-pix_fmt"_s,   u"yuv420p"_s,
            u"-threads"_s,   u"2"_s,
            u"-c:a"_s,       u"aac"_s,
            u"-b:a"_s,       u"48k"_s,
            u"-fflags"_s,    u"+bitexact"_s,
            u"-flags:v"_s,   u"+bitexact"_s,
            u"-flags:a"_s,   u"+bitexact"_s,
            u"-metadata"_s,  u"creation_time="_s + fecha};
        if (destino.endsWith(u".MOV"_s)) {
            argumentos << u"-movflags"_s << u"use_metadata_tags"_s << u"-metadata"_s
                       << u"com.apple.quicktime.make=Apple"_s << u"-metadata"_s
                       << u"com.apple.quicktime.model=iPhone 14 Pro"_s << u"-metadata"_s
                       << u"com.apple.quicktime.creationdate="_s + fecha;
            if (foto.latitud)
                argumentos << u"-metadata"_s
                           << u"com.apple.quicktime.location.ISO6709=+%1%2/"_s.arg(*foto.latitud, 7, 'f', 4, u'0')
                                  .arg(*foto.longitud, 0, 'f', 4);
            if (!foto.vinculo.isEmpty())
                argumentos << u"-metadata"_s << u"com.apple.quicktime.content.identifier="_s + foto.vinculo;
        }
        argumentos << u"-f"_s << (destino.endsWith(u".MOV"_s) ? u"mov"_s : u"mp4"_s) << destino;
        const bool bien = corre(m_ffmpeg, argumentos);
        QFile::remove(grande);
        if (bien)
            return;
        avisa("ffmpeg failed on a video: it is written as Motion JPEG");
    }
    std::vector<QByteArray> cuadros;
    const auto base = imagen.scaled(foto.ancho + 60, foto.alto + 8);
    for (int i = 0; i < static_cast<int>(foto.duracion * 10); ++i)
        cuadros.push_back(
            comoJpeg(base.copy(i * 60 / static_cast<int>(foto.duracion * 10), 4, foto.ancho, foto.alto), 70));
    c.escribe(destino, cintaDeImagenes(cuadros, foto.ancho, foto.alto, 10, foto.momento, foto.vinculo));
}

void Taller::grabacion(const QString &destino, double segundos, int hercios) const
{
    if (!m_ffmpeg.isEmpty() &&
        corre(m_ffmpeg,
              {u"-nostdin"_s, u"-y"_s, u"-f"_s, u"lavfi"_s, u"-i"_s,
               u"sine=frequency=%1:beep_factor=4:duration=%2:sample_rate=44100"_s.arg(hercios).arg(segundos, 0, 'f', 2),
               u"-c:a"_s, u"aac"_s, u"-b:a"_s, u"64k"_s, u"-fflags"_s, u"+bitexact"_s, u"-flags:a"_s, u"+bitexact"_s,
               u"-f"_s, u"ipod"_s, destino}))
        return;
    c.escribe(destino, cintaDeSonido(segundos, hercios, ahoraDelTelefono));
}

} // namespace simulado
