#include "app/manager/links.h"
#include "app/organise_manager.h"
#include "platform/log.h"

namespace kestrova {

namespace {

QString site(const QString& page) { return QStringLiteral(KESTROVA_SITE "/") + page; }

bool open(const Host& host, const QString& address) {
  return host.workspace && host.workspace->openUrl(address);
}

int ask(const Host& host, const Alert& alert) {
  return host.alertPanel ? host.alertPanel->runModal(alert) : 0;
}

}  // namespace

TerminateReply OrganiseManager::appShouldTerminate(const Control*) {
  if (isRunning()) {
    ask(host_,
        {.messageText = QStringLiteral("Info"),
         .informativeText = QStringLiteral("Please wait until process is finished or stop it before exit."),
         .buttons = {QStringLiteral("OK")}});
    return TerminateReply::cancel;
  }
  saveSettings();
  const int answer = ask(host_, {.messageText = QStringLiteral("Alert"),
                                 .informativeText = QStringLiteral("Do you really want to exit?"),
                                 .buttons = {QStringLiteral("Exit"), QStringLiteral("Cancel")}});
  return answer == AlertPanel::firstButtonReturn ? TerminateReply::now : TerminateReply::cancel;
}

bool OrganiseManager::windowShouldClose(const Control* sender) {
  exitApp(sender);
  return false;
}

void OrganiseManager::exitApp(const Control*) {
  if (host_.terminate) host_.terminate();
}

void OrganiseManager::performClose(const Control*) { log(QStringLiteral("Closed")); }

void OrganiseManager::gotoHelp(const Control*) {
  const QString address = site(QStringLiteral("help"));
  if (!open(host_, address)) log(QStringLiteral("Failed to open url: ") + address);
}

void OrganiseManager::gotoReviewPage(const Control*) {
  open(host_, QStringLiteral("macappstore://userpub.itunes.apple.com/WebObjects/MZUserPublishing.woa/wa/"
                             "addUserReview?id=" KESTROVA_STORE_ID "&displayable-kind=30"));
}

void OrganiseManager::requestNewFeature(const Control*) {
  open(host_, site(QStringLiteral("requestfeature.html#feature")));
}

void OrganiseManager::shareFacebook(const Control*) {
  open(host_, QStringLiteral("https://www.facebook.com/sharer/sharer.php?u=" KESTROVA_SITE));
}

void OrganiseManager::shareTwitter(const Control*) {
  const QString text =
      QStringLiteral("This is all in one solution to organise your photo and video folders : ");
  const QString address = QStringLiteral("https://twitter.com/share?hashtags=kestrova&text=") + text +
                          QStringLiteral("&url=" KESTROVA_SITE);
  open(host_, QString(address).replace(u' ', QStringLiteral("%20")));
}

void OrganiseManager::shareGooglePlus(const Control*) {
  open(host_, QStringLiteral("https://plus.google.com/share?url=" KESTROVA_SITE));
}

void OrganiseManager::sharePinterest(const Control*) {
  open(host_, QStringLiteral("https://pinterest.com/pin/create/link/?url=" KESTROVA_SITE));
}

}  // namespace kestrova
