#include "platform/qt/sound.h"

#include "platform/qt/data_files.h"

#include <QSoundEffect>
#include <QThread>
#include <QUrl>
#include <map>

namespace qt_ports {

/// Lives on the sound thread; creates each sound when it is first played.
class Sound::Player {
  public:
    Player() {
        worker_->moveToThread(&thread_);
        thread_.start();
    }
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    void play(const QString& path) {
        QMetaObject::invokeMethod(worker_, [worker = worker_, path] { worker->play(path); });
    }

    /// Waits a moment for the thread; returns false if the sound system blocks it.
    bool end() {
        constexpr unsigned long kPatienceMilliseconds = 500;
        worker_->deleteLater();
        thread_.quit();
        return thread_.wait(kPatienceMilliseconds);
    }

  private:
    class Worker : public QObject {
      public:
        void play(const QString& path) {
            auto& effect = effects_[path];
            if (!effect) {
                effect = std::make_unique<QSoundEffect>();
                effect->setSource(QUrl::fromLocalFile(path));
            }
            effect->play();
        }

      private:
        std::map<QString, std::unique_ptr<QSoundEffect>> effects_;
    };

    QThread thread_;
    Worker* worker_ = new Worker;
};

Sound::Sound(std::filesystem::path dataFolder) : dataFolder_(std::move(dataFolder)) {}

Sound::~Sound() {
    // A thread that hangs in the sound system is left running until the process ends.
    if (player_ && !player_->end()) static_cast<void>(player_.release());
}

void Sound::play(const std::string& file) {
    const auto path = findDataFile(dataFolder_, "assets/sounds/" + QString::fromStdString(file));
    if (!path) return;
    if (!player_) player_ = std::make_unique<Player>();
    player_->play(*path);
}

} // namespace qt_ports
