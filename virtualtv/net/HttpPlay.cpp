// SPDX-License-Identifier: MIT
// Streams the recording that a window shows to a client. The stream ends when the window shows something else, or when
// the client or the recording ends.
#include <boost/asio/buffer.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/http/chunk_encode.hpp>
#include <boost/beast/http/field.hpp>
#include <boost/beast/http/verb.hpp>
#include <boost/beast/http/write.hpp>
#include <exception>
#include <string_view>

#include "net/Head.h"
#include "net/HttpConnection.h"
#include "text/Units.h"

namespace virtualtv::net {

namespace http = boost::beast::http;

void HttpConnection::play(WindowId window) {
  if (site_.isEnding()) return answer(line(503, "the server is ending"));
  // A page that embeds the stream sends no Origin header, unlike a page that fetches it.
  const std::string_view from = view(parser_->get()["Sec-Fetch-Site"]);
  if ((from == "cross-site" || from == "same-site") && header(http::field::origin).empty()) {
    return answer(line(403, "pages of others may not embed what plays"));
  }
  try {
    play_ = site_.plays().open(window);
  } catch (const live::NothingPlays& error) {
    return answer(line(404, error.what()));
  } catch (const std::exception& error) {
    return answer(line(503, text::printable(error.what())));
  }
  timer_.cancel();
  awaitLeaving();
  play_->begin([self = shared_from_this()] { self->sayWhatPlays(); });
}

/// Notices that a client has left, even while there is nothing to send. This no longer works once the client has sent
/// more data.
void HttpConnection::awaitLeaving() {
  socket_.async_wait(Socket::wait_read, [self = shared_from_this(), watched = play_.get()](error_code error) {
    if (error || self->play_.get() != watched) return;
    error_code unknown;
    if (self->socket_.available(unknown) == 0) self->end();
  });
}

void HttpConnection::sayWhatPlays() {
  if (ended_) return;
  if (play_->type().empty()) {
    const std::string reason = play_->reason();
    play_.reset();
    return answer(line(503, reason));
  }
  last_ = last_ || parser_->get().version() == 10;  // HTTP/1.0 ends a body by closing only
  prepareHead(200, {{"Content-Type", play_->type()}});
  message_->chunked(parser_->get().version() != 10);
  within(site_.limits().forAnswer);
  serializer_.emplace(*message_);
  serializer_->split(true);
  http::async_write_header(socket_, *serializer_, [self = shared_from_this()](error_code error, std::size_t) {
    self->serializer_.reset();
    if (error) return self->end();
    if (self->parser_->get().method() != http::verb::head) return self->sendPiece();
    self->endPlay();
    self->next();
  });
}

void HttpConnection::sendPiece() {
  timer_.cancel();  // a recording has no time limit
  play_->read([self = shared_from_this()](std::string_view piece) { self->takePiece(piece); });
}

void HttpConnection::takePiece(std::string_view piece) {
  if (ended_) return;
  const bool isLast = piece.empty();
  const bool isChunked = message_->chunked();
  if (isLast) endPlay();
  if (isLast && !isChunked) return next();
  within(site_.limits().forAnswer);
  const auto then = [self = shared_from_this(), isLast](error_code error, std::size_t) {
    if (error) return self->end();
    isLast ? self->next() : self->sendPiece();
  };
  if (isLast) return asio::async_write(socket_, http::make_chunk_last(), then);
  const asio::const_buffer bytes(piece.data(), piece.size());
  if (!isChunked) return asio::async_write(socket_, bytes, then);
  asio::async_write(socket_, http::make_chunk(bytes), then);
}

void HttpConnection::endPlay() {
  play_->end();
  play_.reset();
}

}  // namespace virtualtv::net
