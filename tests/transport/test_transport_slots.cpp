#include "support/zyr_slot_spy.h"
#include "zyr_common/transport/zyr_certificates_handler.h"
#include "zyr_common/transport/zyr_client_transport.h"
#include "zyr_common/transport/zyr_server_transport.h"

#include <gtest/gtest.h>

namespace zyr {
namespace {

// The operations of the transport itself; the next one has the slot 55.
void expectTransport(SlotSpy& p_spy, ITransport* p_transport) {
    p_spy.expectForwarded(p_transport, &ITransport::initialize, 43);
    p_spy.expectForwardedInOrder(p_transport, 44, &ITransport::shutdownConnection, &ITransport::iterateSender,
                                 &ITransport::flushSender, &ITransport::sendMessage, &ITransport::sendMessageObject,
                                 &ITransport::receiveMessage, &ITransport::receiveMessageObject,
                                 &ITransport::getFeatures, &ITransport::getMutableFeatures, &ITransport::setFeatures,
                                 &ITransport::getTransportReserved);
}

} // namespace

TEST(TransportFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WTransport* facade = spy.makeFacade<WTransport>();
    expectTransport(spy, facade);
    facade->release();
}

TEST(ServerTransportFacade, HasThreeOperationsBehindItsReservedOne) {
    SlotSpy spy;
    WServerTransport* facade = spy.makeFacade<WServerTransport>();
    expectTransport(spy, facade);
    IServerTransport* server = facade;
    spy.expectForwardedInOrder(server, 55, &IServerTransport::initializeSecure,
                               &IServerTransport::getServerTransportReserved, &IServerTransport::setWebSocketPath,
                               &IServerTransport::setHttpsResponse, &IServerTransport::setHttpsDocumentRoot);
    facade->release();
}

TEST(ClientTransportFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WClientTransport* facade = spy.makeFacade<WClientTransport>();
    expectTransport(spy, facade);
    IClientTransport* client = facade;
    spy.expectForwardedInOrder(client, 55, &IClientTransport::initializeSecure,
                               &IClientTransport::getClientTransportReserved);
    facade->release();
}

TEST(CertificatesHandlerFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WCertificatesHandler* facade = spy.makeFacade<WCertificatesHandler>();
    ICertificatesHandler* handler = facade;
    spy.expectForwardedInOrder(handler, 43, &ICertificatesHandler::generateSelfSignedToFile,
                               &ICertificatesHandler::getCertificatesHandlerReserved);
    facade->release();
}

TEST(TransportEntries, StandInFrontOfTheStreams) {
    EXPECT_EQ(coreTableEntry<ITransport>, 80);
    EXPECT_EQ(coreTableEntry<IServerTransport>, 81);
    EXPECT_EQ(coreTableEntry<IClientTransport>, 82);
    EXPECT_EQ(coreTableEntry<ICertificatesHandler>, 83);
}

} // namespace zyr
