# A small element: runs a command with the word PORT replaced by its port, and answers TL1 commands to it.
use strict;
use warnings;
use IO::Socket::INET;

my $listener = IO::Socket::INET->new(Listen => 1, LocalAddr => '127.0.0.1') or die "no port: $!";
alarm 20;
my $child = fork // die "no process: $!";
exec map { s/PORT/$listener->sockport/er } @ARGV if $child == 0;
my $connection = $listener->accept or die "no connection: $!";

my $header = "\r\n\n   NE-EAST 26-01-15 12:00:31\r\n";
local $/ = ';';
print $connection "Welcome; type commands\r\n< \xFF\xFB\x01";
while (my $command = <$connection>) {
  my (undef, undef, undef, $ctag) = split /[:;]/, $command;
  next unless defined $ctag;
  my $report = "$header*C 17 REPT ALM EQPT\r\n   \"SLOT-5:CR,FAN-FAIL,SA,01-15,12-00-31,NEND\"\r\n;";
  my $begin = "${header}M  $ctag COMPLD\r\n   \"SLOT-3:CR,LOS,SA\"\r\n>";
  my $end = "${header}M  $ctag COMPLD\r\n   \"SLOT-5:CR,FAN-FAIL,SA\"\r\n;";
  print $connection $command =~ /RTRV-ALM/ ? "$begin$report$end" : "${header}M  0 DENY\r\n   ICNV\r\n;";
}
waitpid $child, 0;
exit $? >> 8;
