#include "contenido/Contexto.h"
#include "contenido/Exif.h"
#include "contenido/Pintor.h"
#include "contenido/Taller.h"

#include <QFile>
#include <QFileInfo>
#include <QPainter>

#include <algorithm>
#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

QByteArray ajusteAae(const Foto &f)
{
    return u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist "
           u"version=\"1.0\">\n<dict>\n<key>adjustmentBaseVersion</key><integer>0</integer>\n"
           "<key>adjustmentData</key><data>%1</data>\n<key>adjustmentEditorBundleID</"
           "key><string>com.apple.mobileslideshow</string>\n"
           "<key>adjustmentFormatIdentifier</key><string>com.apple.photo</string>\n<key>adjustmentFormatVersion</"
           "key><string>1.9</string>\n"
           "<key>adjustmentRenderTypes</key><integer>0</integer>\n</dict>\n</plist>\n"_s
               .arg(QString::fromLatin1(f.fichero.toLatin1().toBase64()))
               .toUtf8();
}

void oscurece(QImage &imagen)
{
    QPainter p(&imagen);
    p.fillRect(imagen.rect(), QColor(0, 0, 0, 238));
}

QString rutaDe(Contexto &c, const Foto &f)
{
    return c.media(u"DCIM/"_s + f.carpeta + u'/' + f.fichero);
}

class Revelador
{
public:
    explicit Revelador(Contexto &contexto) : c(contexto), m_taller(contexto) {}

    void revela(Foto &f)
    {
        const auto ruta = rutaDe(c, f);
        if (f.clase == Foto::Aae)
            return ponAjusteDeFoto(c, f);
        if (f.igualA >= 0)
            return;
        if (f.clase == Foto::Captura)
            c.escribe(ruta, comoPng(pintaCaptura(f.motivo, f.ancho, f.alto)));
        else if (f.esVideo())
            m_taller.video(ruta, f, m_taller.imagen(f.motivo, f.ancho, f.alto));
        else
            foto(ruta, f);
        f.bytes = QFileInfo(ruta).size();
    }

private:
    void foto(const QString &ruta, const Foto &f)
    {
        auto imagen = m_taller.imagen(f.motivo, f.ancho, f.alto, f.variante);
        if (f.defecto == 1)
            imagen = imagen.scaled(imagen.size() / 40, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                         .scaled(imagen.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        else if (f.defecto == 2)
            oscurece(imagen);
        if (f.clase == Foto::Retoque)
            imagen = imagen.mirrored(true, false);
        const bool heic = ruta.endsWith(u".HEIC"_s);
        const auto jpeg = heic ? ruta + u".jpg"_s : ruta;
        c.escribe(jpeg, comoJpeg(imagen, heic ? 92 : 82));
        if (!ponExif(jpeg, f))
            c.falla(u"No se pudieron escribir los datos de %1"_s.arg(jpeg));
        if (!heic)
            return;
        if (!m_taller.heic(jpeg, ruta, 45))
            c.falla(u"No se pudo hacer %1"_s.arg(ruta));
        QFile::remove(jpeg);
    }

    Contexto &c;
    Taller m_taller;
};

} // namespace

void ponAjusteDeFoto(Contexto &c, Foto &foto)
{
    const auto ruta = c.escribe(rutaDe(c, foto), ajusteAae(foto));
    foto.bytes = QFileInfo(ruta).size();
}

void ponCarrete(Contexto &c)
{
    if (c.opciones.tamano == OpcionesContenido::Grande)
        return ponCarreteGrande(c);
    Revelador revelador(c);
    // Each picture depends on nothing but its own plan: what thread makes it does not show in the result.
    std::atomic<size_t> siguiente = 0;
    const auto trabaja = [&] {
        for (size_t i = siguiente++; i < c.carrete.size(); i = siguiente++)
            revelador.revela(c.carrete[i]);
    };
    {
        std::vector<std::jthread> hilos;
        for (unsigned i = 1; i < std::clamp(std::thread::hardware_concurrency(), 1U, 8U); ++i)
            hilos.emplace_back(trabaja);
        trabaja();
    }
    for (auto &foto : c.carrete) {
        const auto ruta = rutaDe(c, foto);
        if (foto.igualA >= 0) {
            const auto &primera = c.carrete[static_cast<size_t>(foto.igualA)];
            if (!QFile::copy(rutaDe(c, primera), ruta))
                c.falla(u"No se pudo copiar %1"_s.arg(ruta));
            foto.bytes = primera.bytes;
        }
        c.fechas[ruta] = foto.momento;
    }
}

} // namespace simulado
