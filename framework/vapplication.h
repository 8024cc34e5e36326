#pragma once

#include <QApplication>

#include <memory>

class CloseRequestFilter;
class FontsAhead;
class InstanceLock;

/// The application object of a program of the device.
class VApplication : public QApplication {
    Q_OBJECT

public:
    /// The three flags belong to the device's own framework; this stand-in gives them no meaning.
    VApplication(int &argc, char **argv, bool, bool, bool);
    ~VApplication() override;

    /// Ends this process with status 0, without a message, when the same user already runs this program.
    void exitIfRunning();

private:
    VApplication(int &argc, char **argv, std::unique_ptr<FontsAhead> fontsAhead);

    std::unique_ptr<FontsAhead> m_fontsAhead;
    std::unique_ptr<CloseRequestFilter> m_closeRequests;
    std::unique_ptr<InstanceLock> m_instanceLock;
};
