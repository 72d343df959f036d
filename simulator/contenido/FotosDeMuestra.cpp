#include "contenido/FotosDeMuestra.h"

#include <QFile>

namespace simulado
{

static const char *const rutas[] = {
    "/usr/share/backgrounds/picosdeeuropa_by_Aitzol_Berasategi.jpg",
    "/usr/share/backgrounds/mate/nature/Dune.jpg",
    "/usr/share/backgrounds/Bridge_by_Sander_Klootwijk.jpg",
    "/usr/share/backgrounds/mate/nature/Storm.jpg",
    "/usr/share/backgrounds/friends_by_Aitzol_Berasategi.jpg",
    "/usr/share/backgrounds/mate/nature/LadyBird.jpg",
    "/usr/share/backgrounds/Dragonfly_by_Bolly.jpg",
    "/usr/share/backgrounds/mate/nature/Aqua.jpg",
    "/usr/share/backgrounds/Kleiber_by_Lukas_Baubkus.jpg",
    "/usr/share/backgrounds/life_by_Aitzol_Berasategi.jpg",
    "/usr/share/backgrounds/mate/nature/Garden.jpg",
    "/usr/share/backgrounds/Painting-Colors_by__herobrine7gamer.jpg",
    "/usr/share/backgrounds/Wine_by_Jakkub_Mede.jpg",
    "/usr/share/backgrounds/mate/nature/YellowFlower.jpg",
    "/usr/share/backgrounds/sunset_by_Aitzol_Berasategi.jpg",
    "/usr/share/backgrounds/mate/nature/TwoWings.jpg",
    "/usr/share/backgrounds/aitzgorri_by_Aitzol_Berasategi.jpg",
    "/usr/share/backgrounds/mate/nature/RainDrops.jpg",
    "/usr/share/backgrounds/seeding_by_Clements_Engelhardt.jpg",
    "/usr/share/backgrounds/mate/nature/FreshFlower.jpg",
    "/usr/share/backgrounds/greentock_by_Peter_Nerlich.jpg",
    "/usr/share/backgrounds/mate/nature/GreenMeadow.jpg",
    "/usr/share/backgrounds/free_by_Peter_Nerlich.jpg",
    "/usr/share/backgrounds/mate/nature/Wood.jpg",
    "/usr/share/backgrounds/Picture_0B_by_freespace.jpg",
    "/usr/share/backgrounds/mate/nature/Blinds.jpg",
    "/usr/share/backgrounds/Picture_1A_by_freespace.jpg",
};

QStringList fotosDeMuestra()
{
    QStringList presentes;
    for (const char *ruta : rutas)
        if (QFile::exists(QString::fromUtf8(ruta)))
            presentes << QString::fromUtf8(ruta);
    return presentes;
}

} // namespace simulado
