#include "ftp/logon_messages.h"

#include "support/log.h"

namespace {

// clang-format off
// One text on one line, so that a search for what a user reports finds it.
/// The format of each message, with the host and the port as its arguments.
const char* Format(LogonMessage message) {
  switch (message) {
    case LogonMessage::kConnectFailed:
      return "サーバ%s（ポート%d）に接続できませんでした。正しいサーバーアドレスとポートが入力されていることを確認してください。";
    case LogonMessage::kImplicitTlsFailed:
      return "SSL/TLSを使ってサーバー%s（ポート%d）へセキュリティで保護された接続をすることができませんでした。 ";
    case LogonMessage::kNoGreeting:
      return "サーバー%s（ポート%d）からの応答がありません。正しいサーバーアドレスとポートが入力されていることを確認してください。";
    case LogonMessage::kBadGreeting:
      return "サーバー%s（ポート%d）からの応答が不良です。正しいサーバーアドレスとポートが入力されていることを確認してください。";
    case LogonMessage::kExplicitTlsFailed:
      return "サーバー%s（ポート%d）で明示的SSL/TSLに失敗しました。黙示的なSSL/TSLまたは標準FTPをお試しください。";
    case LogonMessage::kExplicitTlsRefused:
      return "サーバー%s（ポート%d）は明示的SSL/TSLに対応していません。黙示的SSL/TSLまたは標準FTPをお試しください。";
    case LogonMessage::kHandshakeFailed:
      return "サーバー%s（ポート%d）でSSL/TSLを使うことができません。セキュリティ保護無しを試しています。";
    case LogonMessage::kNoProxyGreeting:
      return "サーバー%s（ポート%d）の応答がありません。正しいサーバーアドレスとポートが入力されていることを確認してください。";
    case LogonMessage::kProxyUserNotSent:
      return "サーバー%s（ポート%d）にユーザー名を送信できませんでした。接続を確認してください。";
    case LogonMessage::kNoReplyToProxyUser:
      return "ユーザー名に対してサーバー%s（ポート%d）からの応答がありません。接続を確認してください。";
    case LogonMessage::kProxyPasswordNotSent:
      return "サーバー%s（ポート%d）にパスワードを送信できませんでした。接続を確認してください。";
    case LogonMessage::kNoReplyToProxyPassword:
      return "パスワードに対してサーバー%s（ポート%d）からの応答がありません。接続を確認してください。";
    case LogonMessage::kRoutingNotSent:
      return "サーバー%s（ポート%d）へサイトコマンドを送信できませんでした。接続を確認してください。";
    case LogonMessage::kNoReply:
      return "サーバー%s（ポート%d）からの応答がありません。接続を確認してください。";
    case LogonMessage::kUnknownReply:
      return "サーバー%s（ポート%d）からの応答が不明です。";
    case LogonMessage::kUserNotSent:
      return "サーバー%s（ポート%d）へのユーザー名送信に失敗しました。接続を確認しています。";
  }
  return "";
}
// clang-format on

}  // namespace

void LogLogonMessage(LogonMessage message, const LogonPeer& peer) {
  const char* format = Format(message);
  if (message == LogonMessage::kExplicitTlsRefused) {
    LOGWARNF(format, peer.szHost, peer.iPort);
  } else {
    LOGERRORF(format, peer.szHost, peer.iPort);
  }
}

LProcessResult LogIfFailed(LProcessResult result, LogonMessage message, const LogonPeer& peer) {
  if (result == LProcessResultFailed) LogLogonMessage(message, peer);
  return result;
}
