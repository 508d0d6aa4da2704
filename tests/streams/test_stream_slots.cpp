#include "support/zyr_slot_spy.h"
#include "zyr_common/streams/zyr_file_stream.h"
#include "zyr_common/streams/zyr_input_stream.h"
#include "zyr_common/streams/zyr_io_stream.h"
#include "zyr_common/streams/zyr_memory_stream.h"
#include "zyr_common/streams/zyr_output_stream.h"

namespace zyr {

/// The facades of streams over a spy: each operation calls its slot.
class StreamFacade : public testing::Test {
protected:
    template <class Interface> void expectInput(Interface* p_facade) {
        m_spy.expectForwardedInOrder<IInputStream>(p_facade, 43, &IInputStream::readBytes, &IInputStream::readString,
                                                   &IInputStream::readLine, &IInputStream::tell, &IInputStream::seek,
                                                   &IInputStream::isSeekAvailable,
                                                   &IInputStream::getInputStreamReserved);
    }
    template <class Interface> void expectOutput(Interface* p_facade) {
        m_spy.expectForwardedInOrder<IOutputStream>(
            p_facade, 43, &IOutputStream::writeBytes, &IOutputStream::writeString, &IOutputStream::writeLine,
            &IOutputStream::tell, &IOutputStream::seek, &IOutputStream::isSeekAvailable, &IOutputStream::flush,
            &IOutputStream::getOutputStreamReserved);
    }
    template <class Interface> void expectBoth(Interface* p_facade) {
        m_spy.expectForwardedInOrder<IIOStream>(
            p_facade, 43, &IIOStream::readBytes, &IIOStream::readString, &IIOStream::readLine, &IIOStream::writeBytes,
            &IIOStream::writeString, &IIOStream::writeLine, &IIOStream::tell, &IIOStream::seek,
            &IIOStream::isSeekAvailable, &IIOStream::flush, &IIOStream::getInputStream, &IIOStream::getOutputStream,
            &IIOStream::getIOStreamReserved);
    }
    template <class Facade, typename... Operations> void expectInOrder(size_t p_firstSlot, Operations... p_operations) {
        Facade* facade = m_spy.makeFacade<Facade>();
        m_spy.expectForwardedInOrder(facade, p_firstSlot, p_operations...);
        facade->release();
    }
    template <class Facade, typename Check> void with(Check p_check) {
        Facade* facade = m_spy.makeFacade<Facade>();
        p_check(facade);
        facade->release();
    }

    SlotSpy m_spy;
};

TEST_F(StreamFacade, OfInputForwardsEachOperationToItsSlot) {
    with<WInputStream>([this](WInputStream* p_facade) { expectInput(p_facade); });
}

TEST_F(StreamFacade, OfOutputForwardsEachOperationToItsSlot) {
    with<WOutputStream>([this](WOutputStream* p_facade) { expectOutput(p_facade); });
}

TEST_F(StreamFacade, OfBothForwardsEachOperationToItsSlot) {
    with<WIOStream>([this](WIOStream* p_facade) { expectBoth(p_facade); });
}

TEST_F(StreamFacade, OfJoinedStreamsForwardsEachOperationToItsSlot) {
    with<WIOStreamJoin>([this](WIOStreamJoin* p_facade) { expectBoth(p_facade); });
    expectInOrder<WIOStreamJoin>(56, &IIOStreamJoin::setInputOutputStreams, &IIOStreamJoin::getIOStreamJoinReserved);
}

TEST_F(StreamFacade, OfFilesForwardsEachOperationToItsSlot) {
    expectInOrder<WFileStream>(43, &IFileStream::open, &IFileStream::readBytes, &IFileStream::readString,
                               &IFileStream::writeBytes, &IFileStream::writeString, &IFileStream::tell,
                               &IFileStream::seek, &IFileStream::flush, &IFileStream::close, &IFileStream::getSize,
                               &IFileStream::getAccess, &IFileStream::getFileStreamReserved);
}

TEST_F(StreamFacade, OfFilesToReadForwardsEachOperationToItsSlot) {
    with<WInputStreamFile>([this](WInputStreamFile* p_facade) { expectInput(p_facade); });
    expectInOrder<WInputStreamFile>(50, &IInputStreamFile::open, &IInputStreamFile::getFileSize,
                                    &IInputStreamFile::setFileStream, &IInputStreamFile::getInputStreamFileReserved);
}

TEST_F(StreamFacade, OfFilesToWriteForwardsEachOperationToItsSlot) {
    with<WOutputStreamFile>([this](WOutputStreamFile* p_facade) { expectOutput(p_facade); });
    expectInOrder<WOutputStreamFile>(51, &IOutputStreamFile::open, &IOutputStreamFile::setFileStream,
                                     &IOutputStreamFile::getOutputStreamFileReserved);
}

TEST_F(StreamFacade, OfFilesForBothForwardsEachOperationToItsSlot) {
    with<WIOStreamFile>([this](WIOStreamFile* p_facade) { expectBoth(p_facade); });
    expectInOrder<WIOStreamFile>(56, &IIOStreamFile::open, &IIOStreamFile::setFileStream,
                                 &IIOStreamFile::getIOStreamFileReserved);
}

TEST_F(StreamFacade, OfMemoryForwardsEachOperationToItsSlot) {
    expectInOrder<WMemoryStream>(43, &IMemoryStream::open, &IMemoryStream::readBytes, &IMemoryStream::readString,
                                 &IMemoryStream::writeBytes, &IMemoryStream::writeString, &IMemoryStream::tell,
                                 &IMemoryStream::seek, &IMemoryStream::close, &IMemoryStream::getAccess,
                                 &IMemoryStream::getMemoryStreamReserved);
}

TEST_F(StreamFacade, OfMemoryToReadForwardsEachOperationToItsSlot) {
    with<WInputStreamMemory>([this](WInputStreamMemory* p_facade) { expectInput(p_facade); });
    expectInOrder<WInputStreamMemory>(50, &IInputStreamMemory::open, &IInputStreamMemory::setMemoryStream,
                                      &IInputStreamMemory::getInputStreamMemoryReserved);
}

TEST_F(StreamFacade, OfMemoryToWriteForwardsEachOperationToItsSlot) {
    with<WOutputStreamMemory>([this](WOutputStreamMemory* p_facade) { expectOutput(p_facade); });
    expectInOrder<WOutputStreamMemory>(51, &IOutputStreamMemory::open, &IOutputStreamMemory::setMemoryStream,
                                       &IOutputStreamMemory::getOutputStreamMemoryReserved);
}

TEST_F(StreamFacade, OfMemoryForBothForwardsEachOperationToItsSlot) {
    with<WIOStreamMemory>([this](WIOStreamMemory* p_facade) { expectBoth(p_facade); });
    expectInOrder<WIOStreamMemory>(56, &IIOStreamMemory::open, &IIOStreamMemory::setMemoryStream,
                                   &IIOStreamMemory::getIOStreamMemoryReserved);
}

} // namespace zyr
