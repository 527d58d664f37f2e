#pragma once

#include <QString>

namespace vuro {

// Where the running program keeps its things. The support folder is $XDG_DATA_HOME/Vuro
// (~/.local/share/Vuro): the store, the lock, sealed images and files, models, recordings.
namespace AppPaths {

// The application identifier: desktop file name, keyring service, reopen channel.
inline constexpr const char* appID = "com.tarnvale.vuro";

QString supportFolder();                 // not created here
QString supportFile(const QString& name);  // a path inside the support folder

}  // namespace AppPaths
}  // namespace vuro
