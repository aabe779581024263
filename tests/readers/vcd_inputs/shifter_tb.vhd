-- A shift register with an 8-bit vector, a bit left unset (so that its first state is U) and an
-- integer; every change is reported, so that a test can compare the dump's values.
library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity shifter_tb is
end entity;

architecture sim of shifter_tb is
  signal clk : std_logic := '0';
  signal data : std_logic_vector(7 downto 0) := x"01";
  signal late : std_logic;
  signal ticks : integer := 0;
begin
  clk <= not clk after 5 ns when ticks < 12 else clk;
  process (clk)
  begin
    if rising_edge(clk) then
      data <= data(6 downto 0) & data(7);
      ticks <= ticks + 1;
      if ticks = 3 then
        late <= '1';
      end if;
    end if;
  end process;
  process (data)
  begin
    report "T " & time'image(now) & " data " & to_string(data);
  end process;
end architecture;
